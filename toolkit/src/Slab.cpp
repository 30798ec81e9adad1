#include "Slab.h"

#include "Archive.h"

#include <cmath>
#include <ostream>

bool Slab::contains(const Vector3D& point) const
{
    return std::fabs(plane.height(point)) <= half_thickness;
}

void Slab::print(std::ostream& out) const
{
    plane.print(out);
    out << ", half thickness: " << half_thickness;
}

void Slab::write(Archive& archive) const
{
    plane.write(archive);
    archive.write_double(half_thickness);
}

void Slab::read(Archive& archive)
{
    Slab s;
    s.plane.read(archive);
    s.half_thickness = archive.read_double();
    *this = s;
}
