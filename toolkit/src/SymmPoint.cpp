#include "SymmPoint.h"

#include <ostream>

void SymmPoint::print(std::ostream& out) const
{
    out << "symmap: " << symmap << " point: " << point;
}

std::ostream& operator<<(std::ostream& out, const SymmPoint& p)
{
    p.print(out);
    return out;
}
