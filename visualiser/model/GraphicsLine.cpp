#include "GraphicsLine.h"

#include "Archive.h"

#include <ostream>

void GraphicsLine::print(std::ostream& out) const
{
    out << "ortho1:" << ortho1_ << ", ortho2:" << ortho2_ << ", ";
    GraphicsObject::print(out);
}

void GraphicsLine::write_geometry(Archive& archive) const
{
    for (double v : {ortho1_.x, ortho1_.y, ortho1_.z, ortho2_.x, ortho2_.y, ortho2_.z})
        archive.write_double(v);
}

void GraphicsLine::read_geometry(Archive& archive)
{
    for (double* v : {&ortho1_.x, &ortho1_.y, &ortho1_.z, &ortho2_.x, &ortho2_.y, &ortho2_.z})
        *v = archive.read_double();
}
