#include "Transformation.h"

#include "ToolkitTestSupport.h"
#include "Vector3D.h"

#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>
#include <vector>

TEST(Transformation, AxisRotationsMoveKnownPoints)
{
    // Axis (normalised first), angle, whether in degrees, a point and where it goes.
    const std::vector<std::tuple<Vector3D, double, bool, Vector3D, Vector3D>> cases = {
        {{0, 0, 5}, 90, true, {1, 0, 0}, {0, 1, 0}},
        {{1, 0, 0}, M_PI / 2, false, {0, 1, 0}, {0, 0, 1}},
        {{0, 1, 0}, 180, true, {1, 2, 3}, {-1, 2, -3}},
        {{1, 1, 1}, 120, true, {1, 0, 0}, {0, 1, 0}},
        {{1, 1, 1}, -120, true, {1, 0, 0}, {0, 0, 1}}};
    for (const auto& [axis, angle, degrees, point, expected] : cases) {
        SCOPED_TRACE(angle);
        const Transformation t(axis, angle, degrees);
        EXPECT_TRUE(near(t * point, expected));
        EXPECT_NEAR(t.determinant(), 1.0, 1e-12);
    }
}
