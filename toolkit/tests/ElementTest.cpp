#include "Element.h"

#include "ElementSetFactory.h"
#include "ToolkitTestSupport.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <tuple>
#include <vector>

TEST(Element, CodesAndSymbols)
{
    const std::vector<std::tuple<const char*, int, const char*, int>> cases = {
        {"Unknown", 0, "Unknown", 0}, {"C", 1, "C", 6},      {"H", 2, "H", 1},     {"Ac", 3, "Ac", 89},
        {"cl", 21, "Cl", 17},         {"D", 27, "D", 1},     {"Lu", 50, "Lu", 71}, {"Lr", 51, "Lr", 103},
        {"X", 100, "X", 0},           {"zr", 106, "Zr", 40}, {"Zz", 107, "Zz", 0}};
    for (const auto& [text, code, symbol, atomic_number] : cases) {
        SCOPED_TRACE(text);
        const Element e{std::string(text)};
        EXPECT_EQ(e.code(), code);
        EXPECT_EQ(e.atomic_number(), atomic_number);
        EXPECT_EQ(Element(code), e);
        std::ostringstream out;
        out << e;
        EXPECT_EQ(out.str(), symbol);
    }
    EXPECT_EQ(Element().code(), 0);
    // Every code reads back from its own symbol; helium to lawrencium each have one code.
    std::set<int> numbers;
    for (int code = 0; code < Element::count; ++code) {
        const Element e(code);
        EXPECT_EQ(Element(std::string(e.symbol())).code(), code);
        if (e.atomic_number() > 1) {
            EXPECT_TRUE(numbers.insert(e.atomic_number()).second) << e.symbol();
        }
    }
    EXPECT_EQ(numbers.size(), 102u);
    EXPECT_EQ(*numbers.begin(), 2);
    EXPECT_EQ(*numbers.rbegin(), 103);
    for (const char* text : {"CL", "Cl", "LW", "DY", "XE", "ZN", "NB", "PB", "GE"})
        EXPECT_TRUE(is_element_symbol(text)) << text;
    for (const char* text : {"LR", "QQ", "CX", "C", "ABC", ""})
        EXPECT_FALSE(is_element_symbol(text)) << text;
}

TEST(Element, FailuresCarryTheirTexts)
{
    const std::vector<std::pair<std::function<void()>, const char*>> cases = {
        {[] { Element(108); }, "Element::Element: Illegal element code."},
        {[] { Element(-1); }, "Element::Element: Illegal element code."},
        {[] { Element(std::string("CL")); }, "Element::Element: Illegal element name: CL"},
        {[] { Element(std::string("Lw")); }, "Element::Element: Illegal element name: Lw"},
        {[] { Element(std::string("")); }, "Element::Element: Illegal element name: "},
        {[] {
             std::istringstream in(std::string(1, char(108)));
             Element().read(in);
         },
         "Element::read: Illegal element code."},
        {[] { ElementSetFactory::group(0); }, "ElementSetFactory::group() - cannot access 1 > group > 18"},
        {[] { ElementSetFactory::group(19); }, "ElementSetFactory::group() - cannot access 1 > group > 18"},
        {[] { ElementSetFactory::transition_row(5); },
         "ElementSetFactory::transition_row() - cannot access 1 > row > 4"}};
    for (const auto& [action, message] : cases)
        EXPECT_EQ(failure_of(action), message);
    std::stringstream stored;
    Element(std::string("Zn")).write(stored);
    Element back;
    back.read(stored);
    EXPECT_STREQ(back.symbol(), "Zn");
}

TEST(Element, RadiiWeightsAndScattering)
{
    // The CSD bonding radii and Bondi's van der Waals radii as published.
    const std::vector<std::tuple<const char*, double, double>> cases = {
        {"C", 0.68, 1.7},   {"H", 0.23, 1.2},   {"N", 0.68, 1.55},  {"O", 0.68, 1.52},
        {"S", 1.02, 1.8},   {"Cl", 0.99, 1.75}, {"Br", 1.21, 1.85}, {"I", 1.4, 1.98},
        {"Zn", 1.45, 1.39}, {"D", 0.23, 1.2},   {"X", 0, 2.0},      {"Zz", 0, 2.0}};
    for (const auto& [symbol, bond_radius, vdw_radius] : cases) {
        const Element e{std::string(symbol)};
        EXPECT_DOUBLE_EQ(e.bond_radius(), bond_radius) << symbol;
        EXPECT_DOUBLE_EQ(e.vdw_radius(), vdw_radius) << symbol;
    }
    const Element c(std::string("C")), o(std::string("O")), h(std::string("H")), d(std::string("D"));
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(c, o), 0.68 + 0.68 + 0.45);
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(o, c), 0.68 + 0.68 + 0.45);
    for (int code = 0; code < Element::count; ++code)
        EXPECT_EQ(Element::max_bond_distance(Element(code), Element(std::string("X"))), 0.0);
    Element::set_vdw_radius(c, 1.75);
    EXPECT_DOUBLE_EQ(c.vdw_radius(), 1.75);
    Element::set_vdw_radius(c, 1.7);

    EXPECT_DOUBLE_EQ(c.atomic_weight(), 12.011);
    EXPECT_DOUBLE_EQ(h.atomic_weight(), 1.008);
    EXPECT_DOUBLE_EQ(Element(std::string("N")).atomic_weight(), 14.007);
    EXPECT_NE(d.atomic_weight(), h.atomic_weight());
    EXPECT_NEAR(c.cromer_mann(0), 2.31, 1e-9);
    EXPECT_NEAR(c.cromer_mann(1), 20.8439, 1e-4);
    EXPECT_NEAR(c.cromer_mann(2), 1.02, 1e-9);
    EXPECT_NEAR(c.cromer_mann(3), 10.2075, 1e-4);
    int with_coefficients = 0;
    for (int code = 1; code < Element::count; ++code) {
        const Element e(code);
        if (e.cromer_mann(0) != 0.0) {
            ++with_coefficients;
            // The published four-Gaussian fits reproduce Z at zero angle to within their rounding.
            EXPECT_NEAR(e.scattering_factor(0.0), e.atomic_number(), 0.1) << e.symbol();
            EXPECT_LT(e.scattering_factor(0.5), e.scattering_factor(0.0)) << e.symbol();
        }
        // A weight between about twice and 2.7 times the atomic number: a shifted column breaks this.
        if (e.atomic_number() >= 2) {
            EXPECT_GE(e.atomic_weight(), 2.0 * e.atomic_number() - 1) << e.symbol();
            EXPECT_LE(e.atomic_weight(), 2.7 * e.atomic_number()) << e.symbol();
        }
    }
    EXPECT_GE(with_coefficients, 95);
}

TEST(Element, NonmetalsAndElementSets)
{
    for (const char* symbol : {"C", "D", "H", "At", "Se"})
        EXPECT_TRUE(Element(std::string(symbol)).is_nonmetal()) << symbol;
    for (const char* symbol : {"Fe", "Na", "Unknown", "X", "Ge"})
        EXPECT_FALSE(Element(std::string(symbol)).is_nonmetal()) << symbol;
    const std::vector<std::pair<ElementSet, std::set<std::string>>> sets = {
        {ElementSetFactory::group(17), {"F", "Cl", "Br", "I", "At"}},
        {ElementSetFactory::group(1), {"H", "D", "Li", "Na", "K", "Rb", "Cs", "Fr"}},
        {ElementSetFactory::group(18), {"He", "Ne", "Ar", "Kr", "Xe", "Rn"}},
        {ElementSetFactory::transition_row(1), {"Sc", "Ti", "V", "Cr", "Mn", "Fe", "Co", "Ni", "Cu", "Zn"}},
        {ElementSetFactory::transition_row(2), {"Y", "Zr", "Nb", "Mo", "Tc", "Ru", "Rh", "Pd", "Ag", "Cd"}}};
    for (const auto& [set, symbols] : sets) {
        std::multiset<std::string> got;
        for (const Element& e : set.elements())
            got.insert(e.symbol());
        EXPECT_EQ(got, std::multiset<std::string>(symbols.begin(), symbols.end()));
    }
    EXPECT_EQ(ElementSetFactory::lanthanides().size() + ElementSetFactory::actinides().size(), 28u);
    ElementSet set;
    for (int code : {1, 1, 2})
        set.add(Element(code));
    EXPECT_EQ(set.size(), 2u);
}
