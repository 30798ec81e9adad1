#include "Transformation.h"

#include "MoleculeError.h"
#include "Vector3D.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

namespace {

void expect_near(const Vector3D& a, const Vector3D& b)
{
    EXPECT_NEAR(a.x, b.x, 1e-12);
    EXPECT_NEAR(a.y, b.y, 1e-12);
    EXPECT_NEAR(a.z, b.z, 1e-12);
}

} // namespace

TEST(Vector3D, ZeroLengthFailuresCarryTheirTexts)
{
    Vector3D zero;
    try {
        zero.normalize();
        FAIL() << "normalize of a zero vector did not throw";
    } catch (const molecule_error& e) {
        EXPECT_STREQ(e.what(), "Cannot normalize a zero length Vector3D");
    }
    try {
        zero.set_length(2.0);
        FAIL() << "set_length of a zero vector did not throw";
    } catch (const molecule_error& e) {
        EXPECT_STREQ(e.what(), "Cannot set the length of a zero vector.");
    }
    Vector3D v(3, 4, 0);
    v.set_length(10);
    expect_near(v, {6, 8, 0});
    expect_near(Vector3D(1, 0, 0).cross({0, 1, 0}), {0, 0, 1});
}

TEST(Transformation, AxisRotationsMoveKnownPoints)
{
    struct Case {
        Vector3D axis;
        double angle;
        bool degrees;
        Vector3D point;
        Vector3D expected;
    };
    const Case cases[] = {
        {{0, 0, 1}, 90, true, {1, 0, 0}, {0, 1, 0}},
        {{0, 0, 5}, 90, true, {1, 0, 0}, {0, 1, 0}}, // the axis is normalised first
        {{1, 0, 0}, M_PI / 2, false, {0, 1, 0}, {0, 0, 1}},
        {{0, 1, 0}, 180, true, {1, 2, 3}, {-1, 2, -3}},
        {{1, 1, 1}, 120, true, {1, 0, 0}, {0, 1, 0}},
        {{1, 1, 1}, -120, true, {1, 0, 0}, {0, 0, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.angle);
        const Transformation t(c.axis, c.angle, c.degrees);
        expect_near(t * c.point, c.expected);
        EXPECT_NEAR(t.determinant(), 1.0, 1e-12);
    }
    EXPECT_THROW(Transformation({0, 0, 0}, 90, true), molecule_error);
}

TEST(Transformation, InverseUndoesAffineAndProjectiveMaps)
{
    Transformation affine(Matrix{{0, -1, 0}, {1, 0, 0}, {0, 0, -1}}, {0.5, 0.25, 1.0});
    Transformation projective = affine;
    projective(3, 0) = 0.5;
    projective(3, 3) = 2.0;
    for (const Transformation& t : {affine, projective}) {
        const Transformation product = t * t.inverse();
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j)
                EXPECT_NEAR(product(i, j), i == j ? 1.0 : 0.0, 1e-12) << i << "," << j;
    }
    const Vector3D p(0.1, 0.2, 0.3);
    expect_near(affine.inverse() * (affine * p), p);
    EXPECT_DOUBLE_EQ(affine.trace(), -1.0);
    EXPECT_DOUBLE_EQ(affine.determinant(), -1.0);
}

TEST(Transformation, FailuresCarryTheirTexts)
{
    try {
        Transformation(Matrix{{1, 0}, {0, 1}}, {});
        FAIL();
    } catch (const molecule_error& e) {
        EXPECT_STREQ(e.what(), "Transformation::set_rot(): must be 3x3 matrix.");
    }
    try {
        Transformation(Matrix{{1, 0, 0}, {1, 0, 0}, {0, 0, 1}}, {}).inverse();
        FAIL();
    } catch (const molecule_error& e) {
        EXPECT_STREQ(e.what(), "Singular Matrix in Transformation::inverse()");
    }
    try {
        Matrix{{1, 2}, {2, 4}}.inverse();
        FAIL();
    } catch (const molecule_error& e) {
        EXPECT_STREQ(e.what(), "LUDecomp: Singular matrix.");
    }
}

TEST(Transformation, WritesSixteenFixedEntries)
{
    std::ostringstream out;
    out << Transformation(Matrix{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}, {0.5, 0, -0.25});
    EXPECT_EQ(out.str(), "   0.000  -1.000   0.000   0.500\n"
                         "   1.000   0.000   0.000   0.000\n"
                         "   0.000   0.000   1.000  -0.250\n"
                         "   0.000   0.000   0.000   1.000\n");
}
