#include "SymmOp.h"

#include "ToolkitTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

TEST(SymmOp, ReadsWritesAndClassifiesOperators)
{
    // Text, text written back, element type, order. A coefficient is not part of the grammar: the 2
    // of x2 is a translation.
    const std::vector<std::tuple<const char*, const char*, int, int>> cases = {
        {"x,y,z", "x,y,z", 1, 1},
        {"X, Y, Z", "x,y,z", 1, 1},
        {"x+0.5,y,z", "1/2+x,y,z", 1, 1},
        {"x+3/4,y+1/12,z+11/12", "3/4+x,1/12+y,11/12+z", 1, 1},
        {"x2,y,z", "2+x,y,z", 1, 1},
        {"-x,-y,-z", "-x,-y,-z", -1, 2},
        {"-x,y,-z", "-x,y,-z", 2, 2},
        {"-x+1/2,y,z", "1/2-x,y,z", -2, 2},
        {"x+1/2,-y+1/2,z-1/2", "1/2+x,1/2-y,-1/2+z", -2, 2},
        {"-y,x-y,z+2/3", "-y,x-y,2/3+z", 3, 3},
        {"y,-x+y,-z", "y,-x+y,-z", -3, 6},
        {"y,-x,-z", "y,-x,-z", -4, 4},
        {"-x+y,-x,-z", "-x+y,-x,-z", -6, 6}};
    for (const auto& [text, written, type, order] : cases) {
        SCOPED_TRACE(text);
        const SymmOp op(text);
        EXPECT_EQ(op.text(), written);
        EXPECT_EQ(SymmOp(op.text()), op);
        EXPECT_EQ(op.element_type(), type);
        EXPECT_EQ(op.order(), order);
        // Applying an operator as often as its order gives the identity rotation.
        Transformation power;
        for (int i = 0; i < order; ++i)
            power = power * op;
        EXPECT_EQ(power.rot(), Transformation().rot());
    }
    // A rounding error below zero is no translation at all.
    SymmOp rounded("x,y,z");
    rounded.set_trans({-1e-13, 0.5 - 1e-13, 0});
    EXPECT_EQ(rounded.text(), "x,1/2+y,z");
    EXPECT_EQ(SymmOp("-x,y+1/2,-z") * Vector3D(0.1, 0.2, 0.3), Vector3D(-0.1, 0.7, -0.3));
}

TEST(SymmOp, RefusesMalformedText)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"x,y", "Could not read symmetry operator: x,y"},
        {"1/2x,y,z", "Invalid symmetry operator: 1/2x,y,z"},
        {"x+1/0,y,z",
         "Cannot read symmetry operator: Illegal bottom half of fraction (0) in symmetry operator "
         "(x+1/0,y,z)"},
        {"x+1/2/3,y,z",
         "Cannot read symmetry operator: Illegal fraction (+1/2/3) in symmetry operator (x+1/2/3,y,z)"}};
    for (const auto& [text, message] : cases)
        EXPECT_EQ(failure_of([&] { SymmOp{text}; }), message) << text;
}

TEST(SymmOp, OrderingIsTolerantAndIgnoresLatticeTranslations)
{
    const std::vector<std::tuple<const char*, const char*, bool>> cases = {
        {"x,y,z", "1+x,y,-1+z", true},
        {"1/3+x,y,z", "0.33333333333+x,y,z", true},
        {"x,y,z", "1/2+x,y,z", false},
        {"x,y,z", "x,y,0.0000001+z", true},
        {"x,y,z", "x,y,0.000001+z", false}};
    for (const auto& [a, b, equivalent] : cases)
        EXPECT_EQ(SymmOp(a).equivalent(SymmOp(b)), equivalent) << a << " vs " << b;
    // Sorting two spellings of one group gives lists that agree element by element.
    std::vector<SymmOp> one{SymmOp("x,y,z"), SymmOp("-x,1/2+y,1/2-z"), SymmOp("-x,-y,-z"),
                            SymmOp("x,1/2-y,1/2+z")};
    std::vector<SymmOp> two{SymmOp("x,-1/2-y,z+1/2"), SymmOp("-x,-y,-z"), SymmOp("x,y,z"),
                            SymmOp("-x,y+1/2,-z-1/2")};
    std::sort(one.begin(), one.end());
    std::sort(two.begin(), two.end());
    for (std::size_t i = 0; i < one.size(); ++i)
        EXPECT_TRUE(one[i].equivalent(two[i])) << one[i].text() << " vs " << two[i].text();
    EXPECT_TRUE(SymmOp("-x,y,z") < SymmOp("x,y,z"));
    EXPECT_FALSE(SymmOp("x,y,z") < SymmOp("-x,y,z"));
}
