#include "IntersectionSolid.h"

#include <algorithm>
#include <ostream>

HSolid IntersectionSolid::clone() const
{
    auto* copy = new IntersectionSolid;
    for (const HSolid& s : solids_)
        copy->add(s->clone());
    return HSolid(copy);
}

bool IntersectionSolid::contains(const Vector3D& point) const
{
    return std::all_of(solids_.begin(), solids_.end(), [&](const HSolid& s) { return s->contains(point); });
}

bool IntersectionSolid::bounds(Vector3D& min, Vector3D& max) const
{
    bool bounded = false;
    for (const HSolid& s : solids_) {
        Vector3D lo, hi;
        if (!s->bounds(lo, hi))
            continue;
        for (int k = 0; k < 3; ++k) {
            min[k] = bounded ? std::max(min[k], lo[k]) : lo[k];
            max[k] = bounded ? std::min(max[k], hi[k]) : hi[k];
        }
        bounded = true;
    }
    return bounded;
}

void IntersectionSolid::print(std::ostream& out) const
{
    out << "intersection of " << solids_.size() << ":";
    for (const HSolid& s : solids_) {
        out << "\n  ";
        s->print(out);
    }
}
