#include "Cell.h"

#include "MoleculeError.h"

#include <cmath>
#include <gtest/gtest.h>

TEST(Cell, ValidityAndOrthogonalisation)
{
    struct Case {
        double a, b, c, alpha, beta, gamma;
        bool valid;
    };
    const Case cases[] = {
        {5, 6, 7, 90, 90, 90, true},
        {10, 10, 12, 90, 90, 120, true},
        {5.2, 7.3, 9.1, 81.2, 95.6, 103.4, true},
        {5, 5, 5, 120, 120, 120, false}, // the sum reaches 360 degrees
        {5, 5, 5, 90, 90, 180, false},   // gamma of 180: the angle sum and the largest-angle rule fail
        {5, 5, 5, 100, 30, 30, false},   // the largest angle is not below the other two together
        {5, 5, 5, 100, 100, 30, true},   // a tie for largest is not tested further
        {0, 5, 5, 90, 90, 90, false},
        {5, -5, 5, 90, 90, 90, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.a << " " << c.b << " " << c.c << " " << c.alpha << " " << c.beta << " " << c.gamma);
        const Cell cell(c.a, c.b, c.c, c.alpha, c.beta, c.gamma);
        EXPECT_EQ(cell.valid(), c.valid);
        if (!c.valid) {
            EXPECT_EQ(cell.orthogonal_matrix(), Matrix::identity(3));
            EXPECT_EQ(cell.fractional_matrix(), Matrix::identity(3));
            continue;
        }
        // The a axis lies along x, b in the xy plane, and the lengths and angles come back.
        const Vector3D a = cell.orthogonal({1, 0, 0}), b = cell.orthogonal({0, 1, 0}),
                       cv = cell.orthogonal({0, 0, 1});
        EXPECT_NEAR(a.y, 0, 1e-12);
        EXPECT_NEAR(a.z, 0, 1e-12);
        EXPECT_NEAR(b.z, 0, 1e-12);
        EXPECT_NEAR(a.length(), c.a, 1e-9);
        EXPECT_NEAR(b.length(), c.b, 1e-9);
        EXPECT_NEAR(cv.length(), c.c, 1e-9);
        EXPECT_NEAR(std::acos(b.dot(cv) / (c.b * c.c)) * 180 / M_PI, c.alpha, 1e-9);
        EXPECT_NEAR(std::acos(a.dot(cv) / (c.a * c.c)) * 180 / M_PI, c.beta, 1e-9);
        EXPECT_NEAR(std::acos(a.dot(b) / (c.a * c.b)) * 180 / M_PI, c.gamma, 1e-9);
        const Vector3D f(0.1, 0.25, 0.7);
        const Vector3D back = cell.fractional(cell.orthogonal(f));
        EXPECT_NEAR(back.x, f.x, 1e-12);
        EXPECT_NEAR(back.y, f.y, 1e-12);
        EXPECT_NEAR(back.z, f.z, 1e-12);
    }
    const Cell radians(5, 6, 7, M_PI / 2, M_PI / 2, M_PI / 2, false);
    EXPECT_NEAR(radians.orthogonal({1, 1, 1}).y, 6, 1e-12);
    EXPECT_NEAR(radians.orthogonal_matrix()(0, 1), 0, 1e-15);
}

TEST(Cell, SiteMultiplicity)
{
    struct Case {
        const char* group;
        Vector3D point;
        int multiplicity;
    };
    const Case cases[] = {
        // The Wyckoff multiplicities of the conventional cell.
        {"P21/c", {0.1, 0.2, 0.3}, 4},      {"P21/c", {0, 0, 0}, 2},        {"P21/c", {0.5, 0.5, 0}, 2},
        {"P-1", {0.5, 0, 0.5}, 1},          {"Fm-3m", {0, 0, 0}, 4},        {"Fm-3m", {0.25, 0.25, 0.25}, 8},
        {"Fm-3m", {0.11, 0.23, 0.37}, 192}, {"Fm-3m", {0.3, 0.3, 0.3}, 32}, {"P1", {0.5, 0.5, 0.5}, 1},
        {"Fm-3m", {0.00002, 0, 0}, 4}, // within the tolerance of the special position
    };
    for (const auto& c : cases) {
        Cell cell(UncertainValue(5), UncertainValue(5), UncertainValue(5), UncertainValue(90),
                  UncertainValue(90), UncertainValue(90), Spacegroup(c.group));
        EXPECT_EQ(cell.site_multiplicity(c.point, 1e-4), c.multiplicity) << c.group << " " << c.point;
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
            const Vector3D again = cell.symmop(*map) * from;
            EXPECT_NEAR(again.x, to.x, 1e-12);
            EXPECT_NEAR(again.y, to.y, 1e-12);
            EXPECT_NEAR(again.z, to.z, 1e-12);
        }
    }
    EXPECT_FALSE(cell.find_symmmap(from, {0.15, 0.2, 0.3}).has_value());
    EXPECT_TRUE(cell.find_symmmap(from, {0.10005, 0.2, 0.3}, 1e-4).has_value());
}

TEST(Cell, EqualityComparesGroupParametersAndPrecision)
{
    const Spacegroup p21c("P21/c");
    const Cell base(UncertainValue(5.1, 2, 3), UncertainValue(6), UncertainValue(7), UncertainValue(90),
                    UncertainValue(100.5, 1, 2), UncertainValue(90), p21c);
    EXPECT_EQ(base, Cell(UncertainValue(5.1, 2, 3), UncertainValue(6), UncertainValue(7), UncertainValue(90),
                         UncertainValue(100.5, 1, 2), UncertainValue(90), p21c));
    EXPECT_NE(base, Cell(UncertainValue(5.1, 2, 4), UncertainValue(6), UncertainValue(7), UncertainValue(90),
                         UncertainValue(100.5, 1, 2), UncertainValue(90), p21c));
    EXPECT_NE(base, Cell(UncertainValue(5.1, 2, 3), UncertainValue(6), UncertainValue(7), UncertainValue(90),
                         UncertainValue(100.5, 1, 2), UncertainValue(90), Spacegroup("P21/n")));
    EXPECT_NEAR(base.beta().value, 100.5 * M_PI / 180, 1e-15);
    EXPECT_EQ(base.beta().precision, 1);
}
