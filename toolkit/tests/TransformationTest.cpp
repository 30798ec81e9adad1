#include "Transformation.h"

#include "ToolkitTestSupport.h"
#include "Vector3D.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>
#include <vector>

TEST(Transformation, FailuresCarryTheirTexts)
{
    const std::vector<std::pair<std::function<void()>, const char*>> cases = {
        {[] { Vector3D().normalize(); }, "Cannot normalize a zero length Vector3D"},
        {[] { Vector3D().set_length(2.0); }, "Cannot set the length of a zero vector."},
        {[] {
             Transformation(Matrix{{1, 0}, {0, 1}}, {});
         },
         "Transformation::set_rot(): must be 3x3 matrix."},
        {[] {
             Transformation(Matrix{{1, 0, 0}, {1, 0, 0}, {0, 0, 1}}, {}).inverse();
         },
         "Singular Matrix in Transformation::inverse()"},
        {[] {
             Matrix{{1, 2}, {2, 4}}.inverse();
         },
         "LUDecomp: Singular matrix."},
        {[] {
             Transformation({0, 0, 0}, 90, true);
         },
         "Cannot normalize a zero length Vector3D"}};
    for (const auto& [action, message] : cases)
        EXPECT_EQ(failure_of(action), message);
    Vector3D v(3, 4, 0);
    v.set_length(10);
    EXPECT_TRUE(near(v, {6, 8, 0}));
    EXPECT_TRUE(near(Vector3D(1, 0, 0).cross({0, 1, 0}), {0, 0, 1}));
}

TEST(Transformation, AxisRotationsMoveKnownPoints)
{
    // Axis (normalised first), angle, whether in degrees, a point and where it goes.
    const std::vector<std::tuple<Vector3D, double, bool, Vector3D, Vector3D>> cases = {
        {{0, 0, 1}, 90, true, {1, 0, 0}, {0, 1, 0}},        {{0, 0, 5}, 90, true, {1, 0, 0}, {0, 1, 0}},
        {{1, 0, 0}, M_PI / 2, false, {0, 1, 0}, {0, 0, 1}}, {{0, 1, 0}, 180, true, {1, 2, 3}, {-1, 2, -3}},
        {{1, 1, 1}, 120, true, {1, 0, 0}, {0, 1, 0}},       {{1, 1, 1}, -120, true, {1, 0, 0}, {0, 0, 1}}};
    for (const auto& [axis, angle, degrees, point, expected] : cases) {
        SCOPED_TRACE(angle);
        const Transformation t(axis, angle, degrees);
        EXPECT_TRUE(near(t * point, expected));
        EXPECT_NEAR(t.determinant(), 1.0, 1e-12);
    }
}

TEST(Transformation, InverseUndoesAffineAndProjectiveMapsAndPrints)
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
    EXPECT_TRUE(near(affine.inverse() * (affine * Vector3D(0.1, 0.2, 0.3)), {0.1, 0.2, 0.3}));
    EXPECT_DOUBLE_EQ(affine.trace(), -1.0);
    EXPECT_DOUBLE_EQ(affine.determinant(), -1.0);
    std::ostringstream out;
    out << Transformation(Matrix{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}, {0.5, 0, -0.25});
    EXPECT_EQ(out.str(), "   0.000  -1.000   0.000   0.500\n"
                         "   1.000   0.000   0.000   0.000\n"
                         "   0.000   0.000   1.000  -0.250\n"
                         "   0.000   0.000   0.000   1.000\n");
}
