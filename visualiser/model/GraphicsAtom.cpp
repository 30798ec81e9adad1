#include "GraphicsAtom.h"

#include "Archive.h"
#include "GraphicsBond.h"

#include <algorithm>
#include <ostream>

int GraphicsAtom::visible_bonds() const
{
    return static_cast<int>(std::count_if(bonds_.begin(), bonds_.end(), [](const GraphicsBond* b) {
        return b->visible() && b->atom1()->visible() && b->atom2()->visible();
    }));
}

std::vector<GraphicsAtom*> GraphicsAtom::bonded_atoms() const
{
    std::vector<GraphicsAtom*> atoms;
    for (const GraphicsBond* bond : bonds_)
        atoms.push_back(bond->atom1().get() == this ? bond->atom2().get() : bond->atom1().get());
    return atoms;
}

void GraphicsAtom::write(Archive& archive) const
{
    GraphicsObject::write(archive);
    for (double v : {ortho_.x, ortho_.y, ortho_.z, radius_})
        archive.write_double(v);
}

void GraphicsAtom::read(Archive& archive)
{
    GraphicsObject::read(archive);
    for (double* v : {&ortho_.x, &ortho_.y, &ortho_.z, &radius_})
        *v = archive.read_double();
}

void GraphicsAtom::print(std::ostream& out) const
{
    out << "ortho:" << ortho_ << ", radius:" << radius_ << ", visible_bonds:" << visible_bonds() << ", ";
    GraphicsObject::print(out);
}
