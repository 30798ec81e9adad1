#include "Plane.h"

#include "Archive.h"

#include <cmath>
#include <ostream>

Plane::Plane(const Vector3D& n, double d) : normal(n.normalized()), distance(d)
{
    // Any axis not along the normal gives an in-plane direction.
    const Vector3D axis = std::fabs(normal.x) < 0.9 ? Vector3D(1, 0, 0) : Vector3D(0, 1, 0);
    v1 = normal.cross(axis).normalized();
    v2 = normal.cross(v1);
}

void Plane::print(std::ostream& out) const
{
    out << "normal: " << normal << ", distance: " << distance << "    v1: " << v1 << "    v2: " << v2;
}

void Plane::write(Archive& archive) const
{
    for (const Vector3D* v : {&normal, &v1, &v2})
        for (int k = 0; k < 3; ++k)
            archive.write_double((*v)[k]);
    archive.write_double(distance);
}

void Plane::read(Archive& archive)
{
    Plane p;
    for (Vector3D* v : {&p.normal, &p.v1, &p.v2})
        for (int k = 0; k < 3; ++k)
            (*v)[k] = archive.read_double();
    p.distance = archive.read_double();
    *this = p;
}
