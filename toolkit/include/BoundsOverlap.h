#pragma once

#include "Vector3D.h"

#include <algorithm>

// The box that every bounded one of `parts` shares, each part's box given by
// `bounds_of(part, lo, hi)`; false when no part is bounded. An intersection lies within it, and
// parts without bounds do not narrow it.
template <class Parts, class BoundsOf>
bool overlap_of_bounds(const Parts& parts, BoundsOf bounds_of, Vector3D& min, Vector3D& max)
{
    bool bounded = false;
    for (const auto& part : parts) {
        Vector3D lo, hi;
        if (!bounds_of(*part, lo, hi))
            continue;
        for (int k = 0; k < 3; ++k) {
            min[k] = bounded ? std::max(min[k], lo[k]) : lo[k];
            max[k] = bounded ? std::min(max[k], hi[k]) : hi[k];
        }
        bounded = true;
    }
    return bounded;
}
