#include "TransformedSolidComposite.h"

#include "BoundsOverlap.h"

#include <algorithm>

bool TransformedSolidComposite::contains(const Cell& cell, const Vector3D& fractional) const
{
    return std::all_of(parts_.begin(), parts_.end(),
                       [&](const HTransformedSolid& p) { return p->contains(cell, fractional); });
}

bool TransformedSolidComposite::fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const
{
    return overlap_of_bounds(
        parts_,
        [&cell](const TransformedSolid& p, Vector3D& lo, Vector3D& hi) {
            return p.fractional_bounds(cell, lo, hi);
        },
        min, max);
}
