#pragma once

#include "MoleculeError.h"
#include "Vector3D.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <string>

// The text of the molecule_error that f throws, or "no failure".
inline std::string failure_of(const std::function<void()>& f)
{
    try {
        f();
    } catch (const molecule_error& e) {
        return e.what();
    }
    return "no failure";
}

inline testing::AssertionResult near(const Vector3D& got, const Vector3D& want, double tolerance = 1e-12)
{
    if (std::max({std::abs(got.x - want.x), std::abs(got.y - want.y), std::abs(got.z - want.z)}) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << got << " is not within " << tolerance << " of " << want;
}
