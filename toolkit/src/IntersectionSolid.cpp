#include "IntersectionSolid.h"

#include "BoundsOverlap.h"

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
    return overlap_of_bounds(
        solids_, [](const Solid& s, Vector3D& lo, Vector3D& hi) { return s.bounds(lo, hi); }, min, max);
}

void IntersectionSolid::print(std::ostream& out) const
{
    out << "intersection of " << solids_.size() << ":";
    for (const HSolid& s : solids_) {
        out << "\n  ";
        s->print(out);
    }
}
