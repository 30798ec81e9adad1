#include "Element.h"

#include "ElementSetFactory.h"
#include "MoleculeError.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace {

std::string failure_of(const std::function<void()>& f)
{
    try {
        f();
    } catch (const molecule_error& e) {
        return e.what();
    }
    return "no failure";
}

} // namespace

TEST(Element, CodesAndSymbols)
{
    struct Case {
        const char* text;
        int code;
        const char* symbol;
        int atomic_number;
    };
    const Case cases[] = {
        {"Unknown", 0, "Unknown", 0}, {"C", 1, "C", 6},      {"H", 2, "H", 1},     {"Ac", 3, "Ac", 89},
        {"cl", 21, "Cl", 17},         {"D", 27, "D", 1},     {"Lu", 50, "Lu", 71}, {"Lr", 51, "Lr", 103},
        {"X", 100, "X", 0},           {"zr", 106, "Zr", 40}, {"Zz", 107, "Zz", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const Element e{std::string(c.text)};
        EXPECT_EQ(e.code(), c.code);
        EXPECT_STREQ(e.symbol(), c.symbol);
        EXPECT_EQ(e.atomic_number(), c.atomic_number);
        EXPECT_EQ(Element(c.code), e);
        std::ostringstream out;
        out << e;
        EXPECT_EQ(out.str(), c.symbol);
    }
    EXPECT_EQ(Element().code(), 0);
    // Every code reads back from its own symbol, and the real elements have distinct numbers
    // apart from the two hydrogens.
    std::set<int> numbers;
    for (int code = 0; code < Element::count; ++code) {
        const Element e(code);
        EXPECT_EQ(Element(std::string(e.symbol())).code(), code);
        if (e.atomic_number() > 1) {
            EXPECT_TRUE(numbers.insert(e.atomic_number()).second) << e.symbol();
        }
    }
    // Helium to lawrencium, each once.
    EXPECT_EQ(numbers.size(), 102u);
    EXPECT_EQ(*numbers.begin(), 2);
    EXPECT_EQ(*numbers.rbegin(), 103);
}

TEST(Element, FailuresCarryTheirTexts)
{
    struct Case {
        std::function<void()> action;
        const char* message;
    };
    const Case cases[] = {
        {[] { Element e(108); }, "Element::Element: Illegal element code."},
        {[] { Element e(-1); }, "Element::Element: Illegal element code."},
        {[] { Element e(std::string("CL")); }, "Element::Element: Illegal element name: CL"},
        {[] { Element e(std::string("Lw")); }, "Element::Element: Illegal element name: Lw"},
        {[] { Element e(std::string("")); }, "Element::Element: Illegal element name: "},
        {[] {
             std::istringstream in(std::string(1, char(108)));
             Element().read(in);
         },
         "Element::read: Illegal element code."},
        {[] { ElementSetFactory::group(0); }, "ElementSetFactory::group() - cannot access 1 > group > 18"},
        {[] { ElementSetFactory::group(19); }, "ElementSetFactory::group() - cannot access 1 > group > 18"},
        {[] { ElementSetFactory::transition_row(5); },
         "ElementSetFactory::transition_row() - cannot access 1 > row > 4"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(failure_of(c.action), c.message);
    std::stringstream stored;
    Element(std::string("Zn")).write(stored);
    Element back;
    back.read(stored);
    EXPECT_STREQ(back.symbol(), "Zn");
}

TEST(Element, RadiiAndBondDistances)
{
    struct Case {
        const char* symbol;
        double bond_radius;
        double vdw_radius;
    };
    // The CSD bonding radii and Bondi's van der Waals radii as published.
    const Case cases[] = {{"C", 0.68, 1.7},   {"H", 0.23, 1.2},   {"N", 0.68, 1.55},  {"O", 0.68, 1.52},
                          {"S", 1.02, 1.8},   {"Cl", 0.99, 1.75}, {"Br", 1.21, 1.85}, {"I", 1.4, 1.98},
                          {"Zn", 1.45, 1.39}, {"D", 0.23, 1.2},   {"X", 0, 2.0},      {"Zz", 0, 2.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.symbol);
        const Element e{std::string(c.symbol)};
        EXPECT_DOUBLE_EQ(e.bond_radius(), c.bond_radius);
        EXPECT_DOUBLE_EQ(e.vdw_radius(), c.vdw_radius);
    }
    const Element carbon(std::string("C")), oxygen(std::string("O")), x(std::string("X"));
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(carbon, oxygen), 0.68 + 0.68 + 0.45);
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(oxygen, carbon), Element::max_bond_distance(carbon, oxygen));
    for (int code = 0; code < Element::count; ++code)
        EXPECT_EQ(Element::max_bond_distance(Element(code), x), 0.0);

    Element::set_vdw_radius(carbon, 1.75);
    EXPECT_DOUBLE_EQ(carbon.vdw_radius(), 1.75);
    Element::set_vdw_radius(carbon, 1.7);
}

TEST(Element, WeightsFollowTheElements)
{
    const Element h(std::string("H")), d(std::string("D")), c(std::string("C")), n(std::string("N"));
    EXPECT_DOUBLE_EQ(c.atomic_weight(), 12.011);
    EXPECT_DOUBLE_EQ(h.atomic_weight(), 1.008);
    EXPECT_DOUBLE_EQ(n.atomic_weight(), 14.007);
    EXPECT_NE(d.atomic_weight(), h.atomic_weight());
    EXPECT_EQ(d.bond_radius(), h.bond_radius());
    // A weight lies within a few units of twice to three times the atomic number for every real
    // element: a shifted column would break this at once.
    for (int code = 1; code < Element::count; ++code) {
        const Element e(code);
        if (e.atomic_number() < 2)
            continue;
        EXPECT_GE(e.atomic_weight(), 2.0 * e.atomic_number() - 1) << e.symbol();
        EXPECT_LE(e.atomic_weight(), 2.7 * e.atomic_number()) << e.symbol();
    }
}

TEST(Element, ScatteringFactorsAtZeroAngleCountTheElectrons)
{
    const Element c(std::string("C"));
    EXPECT_NEAR(c.cromer_mann(0), 2.31, 1e-9);
    EXPECT_NEAR(c.cromer_mann(1), 20.8439, 1e-4);
    EXPECT_NEAR(c.cromer_mann(2), 1.02, 1e-9);
    EXPECT_NEAR(c.cromer_mann(3), 10.2075, 1e-4);
    int with_coefficients = 0;
    for (int code = 1; code < Element::count; ++code) {
        const Element e(code);
        if (e.cromer_mann(0) == 0.0)
            continue;
        ++with_coefficients;
        // The published four-Gaussian fits reproduce Z to within their rounding.
        EXPECT_NEAR(e.scattering_factor(0.0), e.atomic_number(), 0.1) << e.symbol();
        EXPECT_LT(e.scattering_factor(0.5), e.scattering_factor(0.0)) << e.symbol();
    }
    EXPECT_GE(with_coefficients, 95);
}

TEST(Element, SymbolTextTest)
{
    struct Case {
        const char* text;
        bool symbol;
    };
    const Case cases[] = {{"CL", true},   {"Cl", true}, {"LW", true},  {"LR", false}, {"DY", true},
                          {"XE", true},   {"ZN", true}, {"QQ", false}, {"CX", false}, {"C", false},
                          {"ABC", false}, {"", false},  {"NB", true},  {"PB", true},  {"GE", true}};
    for (const auto& c : cases)
        EXPECT_EQ(is_element_symbol(c.text), c.symbol) << c.text;
}

TEST(Element, NonmetalsAndElementSets)
{
    struct Case {
        const char* symbol;
        bool nonmetal;
    };
    const Case cases[] = {{"C", true},   {"D", true},        {"H", true},  {"At", true}, {"Fe", false},
                          {"Na", false}, {"Unknown", false}, {"X", false}, {"Se", true}, {"Ge", false}};
    for (const auto& c : cases)
        EXPECT_EQ(Element(std::string(c.symbol)).is_nonmetal(), c.nonmetal) << c.symbol;

    struct SetCase {
        ElementSet set;
        std::set<std::string> symbols;
    };
    const SetCase sets[] = {
        {ElementSetFactory::group(17), {"F", "Cl", "Br", "I", "At"}},
        {ElementSetFactory::group(1), {"H", "D", "Li", "Na", "K", "Rb", "Cs", "Fr"}},
        {ElementSetFactory::group(18), {"He", "Ne", "Ar", "Kr", "Xe", "Rn"}},
        {ElementSetFactory::transition_row(1), {"Sc", "Ti", "V", "Cr", "Mn", "Fe", "Co", "Ni", "Cu", "Zn"}},
        {ElementSetFactory::transition_row(2), {"Y", "Zr", "Nb", "Mo", "Tc", "Ru", "Rh", "Pd", "Ag", "Cd"}},
    };
    for (const auto& c : sets) {
        std::set<std::string> got;
        for (const Element& e : c.set.elements())
            got.insert(e.symbol());
        EXPECT_EQ(got, c.symbols);
        EXPECT_EQ(got.size(), c.set.size()) << "no duplicates";
    }
    EXPECT_EQ(ElementSetFactory::lanthanides().size() + ElementSetFactory::actinides().size(), 28u);
    ElementSet set;
    set.add(Element(1));
    set.add(Element(1));
    set.add(Element(2));
    EXPECT_EQ(set.size(), 2u);
}
