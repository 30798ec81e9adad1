#include "GraphicsCentroid.h"

#include "Archive.h"

#include <ostream>

void GraphicsCentroid::print(std::ostream& out) const
{
    out << "ortho:" << ortho_ << ", radius:" << radius_ << ", ";
    GraphicsObject::print(out);
}

void GraphicsCentroid::write_geometry(Archive& archive) const
{
    for (double v : {ortho_.x, ortho_.y, ortho_.z, radius_})
        archive.write_double(v);
}

void GraphicsCentroid::read_geometry(Archive& archive)
{
    for (double* v : {&ortho_.x, &ortho_.y, &ortho_.z, &radius_})
        *v = archive.read_double();
}
