#include "GraphicsCell.h"

#include "Archive.h"

#include <ostream>

GraphicsCell::GraphicsCell(const Vector3D& a, const Vector3D& b, const Vector3D& c) : a_(a), b_(b), c_(c)
{
    set_color(RGBA(1, 1, 1, 1));
    set_visible(false);
}

Point GraphicsCell::at(const Vector3D& f) const
{
    return origin_ + a_ * f.x + b_ * f.y + c_ * f.z;
}

void GraphicsCell::copy_display_properties(const GraphicsObject& from)
{
    GraphicsObject::copy_display_properties(from);
    if (const auto* cell = dynamic_cast<const GraphicsCell*>(&from))
        box_ = cell->box_;
}

void GraphicsCell::write(Archive& archive) const
{
    GraphicsObject::write(archive);
    box_.write(archive);
}

void GraphicsCell::read(Archive& archive)
{
    GraphicsObject::read(archive);
    box_.read(archive);
}

void GraphicsCell::print(std::ostream& out) const
{
    GraphicsObject::print(out);
    out << ", box:";
    box_.print(out);
}
