#include "GraphicsContact.h"

#include "Archive.h"

#include <ostream>

void GraphicsContact::write(Archive& archive) const
{
    GraphicsObject::write(archive);
    for (double v : {ortho1_.x, ortho1_.y, ortho1_.z, ortho2_.x, ortho2_.y, ortho2_.z})
        archive.write_double(v);
}

void GraphicsContact::read(Archive& archive)
{
    GraphicsObject::read(archive);
    for (double* v : {&ortho1_.x, &ortho1_.y, &ortho1_.z, &ortho2_.x, &ortho2_.y, &ortho2_.z})
        *v = archive.read_double();
}

void GraphicsContact::print(std::ostream& out) const
{
    out << "ortho1:" << ortho1_ << ", ortho2:" << ortho2_ << ", ";
    GraphicsObject::print(out);
}
