#include "OrthogonalSolid.h"

#include "Cell.h"

#include <algorithm>

bool OrthogonalSolid::contains(const Cell& cell, const Vector3D& fractional) const
{
    return solid()->contains(cell.orthogonal(fractional));
}

bool OrthogonalSolid::fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const
{
    Vector3D lo, hi;
    if (!solid()->bounds(lo, hi))
        return false;
    for (int corner = 0; corner < 8; ++corner) {
        const Vector3D f = cell.fractional(
            {(corner & 1) ? hi.x : lo.x, (corner & 2) ? hi.y : lo.y, (corner & 4) ? hi.z : lo.z});
        for (int k = 0; k < 3; ++k) {
            min[k] = corner ? std::min(min[k], f[k]) : f[k];
            max[k] = corner ? std::max(max[k], f[k]) : f[k];
        }
    }
    return true;
}
