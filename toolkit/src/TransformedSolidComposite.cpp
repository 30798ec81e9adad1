#include "TransformedSolidComposite.h"

#include <algorithm>

bool TransformedSolidComposite::contains(const Cell& cell, const Vector3D& fractional) const
{
    return std::all_of(parts_.begin(), parts_.end(),
                       [&](const HTransformedSolid& p) { return p->contains(cell, fractional); });
}

bool TransformedSolidComposite::fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const
{
    bool bounded = false;
    for (const HTransformedSolid& p : parts_) {
        Vector3D lo, hi;
        if (!p->fractional_bounds(cell, lo, hi))
            continue;
        for (int k = 0; k < 3; ++k) {
            min[k] = bounded ? std::max(min[k], lo[k]) : lo[k];
            max[k] = bounded ? std::min(max[k], hi[k]) : hi[k];
        }
        bounded = true;
    }
    return bounded;
}
