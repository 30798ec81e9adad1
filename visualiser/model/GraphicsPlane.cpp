#include "GraphicsPlane.h"

#include <ostream>

void GraphicsPlane::print(std::ostream& out) const
{
    out << "plane:";
    plane_.print(out);
    out << ", ";
    GraphicsObject::print(out);
}
