#include "SymmMap.h"

#include "SymmPoint.h"

#include <gtest/gtest.h>
#include <sstream>

TEST(SymmMap, EqualityAndText)
{
    const SymmMap m(3, 2, {1, 0, -1});
    EXPECT_EQ(m, SymmMap(3, 2, {1, 0, -1}));
    EXPECT_NE(m, SymmMap(3, 2, {1, 0, 0}));
    EXPECT_NE(m, SymmMap(3, 1, {1, 0, -1}));
    EXPECT_NE(m, SymmMap(4, 2, {1, 0, -1}));
    EXPECT_EQ(SymmMap(), SymmMap(0, 0, {0, 0, 0}));
    std::ostringstream out;
    out << m;
    EXPECT_EQ(out.str(), "3, op: 2, trans:    1.000   0.000  -1.000");
    std::ostringstream point;
    point << SymmPoint(m, {0.5, 0.25, 0});
    EXPECT_EQ(point.str(), "symmap: 3, op: 2, trans:    1.000   0.000  -1.000 point: 0.5 0.25 0");
}
