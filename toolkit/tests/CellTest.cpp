#include "Cell.h"

#include "SymmPoint.h"
#include "ToolkitTestSupport.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>
#include <vector>

namespace {

double degrees_between(const Vector3D& u, const Vector3D& v)
{
    return std::acos(u.dot(v) / (u.length() * v.length())) * 180 / M_PI;
}

Cell cell_of(UncertainValue a, UncertainValue beta, const char* group)
{
    return Cell(a, UncertainValue(6), UncertainValue(7), UncertainValue(90), beta, UncertainValue(90),
                Spacegroup(group));
}

} // namespace

TEST(Cell, ValidityAndOrthogonalisation)
{
    // a, b, c, alpha, beta, gamma, valid. The angles must sum below 360 degrees and the largest must be
    // below the other two together; a tie for largest is not tested further.
    const std::vector<std::array<double, 7>> cases = {
        {10, 10, 12, 90, 90, 120, 1}, {5.2, 7.3, 9.1, 81.2, 95.6, 103.4, 1},
        {0, 5, 5, 90, 90, 90, 0},     {5, 5, 5, 120, 120, 120, 0},
        {5, 5, 5, 100, 30, 30, 0},    {5, 5, 5, 100, 100, 30, 1}};
    for (const auto& row : cases) {
        const auto [a, b, c, alpha, beta, gamma, valid] = row;
        SCOPED_TRACE(testing::PrintToString(row));
        const Cell cell(a, b, c, alpha, beta, gamma);
        EXPECT_EQ(cell.valid(), valid == 1);
        if (valid == 0) {
            EXPECT_EQ(cell.orthogonal_matrix(), Matrix::identity(3));
            EXPECT_EQ(cell.fractional_matrix(), Matrix::identity(3));
            continue;
        }
        // The a axis lies along x, b in the xy plane, and the lengths and angles come back.
        const Vector3D x = cell.orthogonal({1, 0, 0}), y = cell.orthogonal({0, 1, 0}),
                       z = cell.orthogonal({0, 0, 1});
        EXPECT_TRUE(near({x.y, x.z, y.z}, {0, 0, 0}));
        EXPECT_TRUE(near({x.length(), y.length(), z.length()}, {a, b, c}, 1e-9));
        EXPECT_TRUE(near({degrees_between(y, z), degrees_between(x, z), degrees_between(x, y)},
                         {alpha, beta, gamma}, 1e-9));
        EXPECT_TRUE(near(cell.fractional(cell.orthogonal({0.1, 0.25, 0.7})), {0.1, 0.25, 0.7}));
    }
    EXPECT_NEAR(Cell(5, 6, 7, M_PI / 2, M_PI / 2, M_PI / 2, false).orthogonal({1, 1, 1}).y, 6, 1e-12);
}

TEST(Cell, SiteMultiplicity)
{
    // The Wyckoff multiplicities of the conventional cell; the last is within the tolerance of 0,0,0.
    const std::vector<std::tuple<const char*, Vector3D, int>> cases = {
        {"P21/c", {0.1, 0.2, 0.3}, 4},      {"P21/c", {0, 0, 0}, 2},
        {"Fm-3m", {0.25, 0.25, 0.25}, 8},   {"Fm-3m", {0.3, 0.3, 0.3}, 32},
        {"Fm-3m", {0.11, 0.23, 0.37}, 192}, {"Fm-3m", {0.00002, 0, 0}, 4}};
    for (const auto& [group, point, multiplicity] : cases) {
        const Cell cell(UncertainValue(5), UncertainValue(5), UncertainValue(5), UncertainValue(90),
                        UncertainValue(90), UncertainValue(90), Spacegroup(group));
        EXPECT_EQ(cell.site_multiplicity(point, 1e-4), multiplicity) << group << " " << point;
    }
}

TEST(Cell, FindsTheSymmetryMapBetweenPositions)
{
    Cell cell(5, 6, 7, 90, 100, 90);
    cell.set_spacegroup(Spacegroup("P21/c"));
    const Vector3D from(0.1, 0.2, 0.3);
    for (int op = 0; op < cell.nsymmops(); ++op) {
        for (const Vector3D& shift : {Vector3D(0, 0, 0), Vector3D(1, -1, 2)}) {
            const Vector3D to = cell.symmop(op) * from + shift;
            const auto map = cell.find_symmmap(from, to);
            ASSERT_TRUE(map.has_value());
            EXPECT_EQ(map->op, op);
            EXPECT_TRUE(near(cell.symmop(*map) * from, to));
        }
    }
    EXPECT_FALSE(cell.find_symmmap(from, {0.15, 0.2, 0.3}).has_value());
    EXPECT_TRUE(cell.find_symmmap(from, {0.10005, 0.2, 0.3}, 1e-4).has_value());

    const SymmMap m(3, 2, {1, 0, -1});
    std::ostringstream out;
    out << m << "|" << SymmPoint(m, {0.5, 0.25, 0});
    EXPECT_EQ(out.str(), "3, op: 2, trans:    1.000   0.000  -1.000|"
                         "symmap: 3, op: 2, trans:    1.000   0.000  -1.000 point: 0.5 0.25 0");
}

TEST(Cell, EqualityComparesGroupParametersAndPrecision)
{
    const Cell base = cell_of(UncertainValue(5.1, 2, 3), UncertainValue(100.5, 1, 2), "P21/c");
    EXPECT_EQ(base, cell_of(UncertainValue(5.1, 2, 3), UncertainValue(100.5, 1, 2), "P21/c"));
    EXPECT_NE(base, cell_of(UncertainValue(5.1, 2, 4), UncertainValue(100.5, 1, 2), "P21/c"));
    EXPECT_NE(base, cell_of(UncertainValue(5.1, 2, 3), UncertainValue(100.5, 1, 2), "P21/n"));
    EXPECT_NEAR(base.beta().value, 100.5 * M_PI / 180, 1e-15);
}
