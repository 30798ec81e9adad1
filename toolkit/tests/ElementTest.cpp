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
        {"Unknown", 0, "Unknown", 0}, {"C", 1, "C", 6},     {"cl", 21, "Cl", 17}, {"D", 27, "D", 1},
        {"Lr", 51, "Lr", 103},        {"zr", 106, "Zr", 40}};
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
    for (const char* text : {"CL", "Cl", "LW", "ZN"})
        EXPECT_TRUE(is_element_symbol(text)) << text;
    for (const char* text : {"LR", "CX", "C", ""})
        EXPECT_FALSE(is_element_symbol(text)) << text;
}

TEST(Element, FailuresCarryTheirTextsAndStorageReadsBack)
{
    const std::vector<std::pair<std::function<void()>, const char*>> cases = {
        {[] { Element(108); }, "Element::Element: Illegal element code."},
        {[] { Element(std::string("CL")); }, "Element::Element: Illegal element name: CL"},
        {[] { ElementSetFactory::group(0); }, "ElementSetFactory::group() - cannot access 1 > group > 18"}};
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
    // Bk, the heavy actinides and radon never bond by distance; D shares the radii of H but not its
    // weight; an element without a measured volume has none.
    const std::vector<std::tuple<const char*, double, double, double, double>> cases = {
        {"C", 0.68, 1.7, 13.87, 12.011},
        {"D", 0.23, 1.2, 0, 2},
        {"Zn", 1.45, 1.39, 0, 65.37},
        {"Bk", 0, 2.0, 0, 247},
        {"X", 0, 2.0, 0, 0}};
    for (const auto& [symbol, bond_radius, vdw_radius, volume, weight] : cases) {
        const Element e{std::string(symbol)};
        EXPECT_EQ(std::make_tuple(e.bond_radius(), e.vdw_radius(), e.volume()),
                  std::make_tuple(bond_radius, vdw_radius, volume))
            << symbol;
        EXPECT_NEAR(e.atomic_weight(), weight, 0.01) << symbol;
    }
    const Element c(std::string("C")), o(std::string("O")), h(std::string("H")), d(std::string("D"));
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(c, o), 0.68 + 0.68 + 0.45);
    EXPECT_DOUBLE_EQ(Element::max_bond_distance(o, c), 0.68 + 0.68 + 0.45);
    for (int code = 0; code < Element::count; ++code)
        for (const char* never_bonds : {"X", "Bk"})
            EXPECT_EQ(Element::max_bond_distance(Element(code), Element(std::string(never_bonds))), 0.0)
                << Element(code).symbol() << " " << never_bonds;
    Element::set_vdw_radius(c, 1.75);
    EXPECT_DOUBLE_EQ(c.vdw_radius(), 1.75);
    Element::set_vdw_radius(c, 1.7);

    // D scatters as H.
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(d.cromer_mann(i), h.cromer_mann(i)) << i;
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
    for (const char* symbol : {"C", "D", "At"})
        EXPECT_TRUE(Element(std::string(symbol)).is_nonmetal()) << symbol;
    for (const char* symbol : {"Fe", "X", "Ge"})
        EXPECT_FALSE(Element(std::string(symbol)).is_nonmetal()) << symbol;
    std::multiset<std::string> halogens;
    const ElementSet group = ElementSetFactory::group(17);
    for (const Element& e : group.elements())
        halogens.insert(e.symbol());
    EXPECT_EQ(halogens, (std::multiset<std::string>{"At", "Br", "Cl", "F", "I"}));
    EXPECT_EQ(ElementSetFactory::lanthanides().size() + ElementSetFactory::actinides().size(), 28u);
}
