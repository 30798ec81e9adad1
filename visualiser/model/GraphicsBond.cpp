#include "GraphicsBond.h"

#include "Archive.h"

#include <ostream>

bool GraphicsBond::reference_point(Point& point) const
{
    Point sum;
    int n = 0;
    for (const HGraphicsAtom& end : atoms_)
        for (const GraphicsAtom* neighbour : end->bonded_atoms())
            if (neighbour != atom1().get() && neighbour != atom2().get()) {
                sum += neighbour->ortho();
                ++n;
            }
    if (n == 0)
        return false;
    point = sum / n;
    return true;
}

void GraphicsBond::copy_display_properties(const GraphicsObject& from)
{
    GraphicsObject::copy_display_properties(from);
    if (const auto* bond = dynamic_cast<const GraphicsBond*>(&from))
        color2_ = bond->color2_;
}

void GraphicsBond::write(Archive& archive) const
{
    GraphicsObject::write(archive);
    color2_.write(archive);
    archive.write_int32(type_);
}

void GraphicsBond::read(Archive& archive)
{
    GraphicsObject::read(archive);
    color2_.read(archive);
    type_ = archive.read_int32();
}

void GraphicsBond::print(std::ostream& out) const
{
    if (atoms_.size() < 2)
        out << "bonds undefined!";
    else
        out << "atom1:" << atom1()->number() << ", atom2:" << atom2()->number()
            << ", ortho1:" << atom1()->ortho() << ", ortho2:" << atom2()->ortho();
    out << ", color2:" << color2_ << ", type:" << type_ << ", ";
    GraphicsObject::print(out);
}
