#include "SymmMap.h"

#include <iomanip>
#include <ostream>

void SymmMap::print(std::ostream& out) const
{
    const auto flags = out.flags();
    const auto precision = out.precision();
    out << id << ", op: " << op << ", trans: " << std::fixed << std::setprecision(3) << std::setw(8)
        << trans.x << std::setw(8) << trans.y << std::setw(8) << trans.z;
    out.flags(flags);
    out.precision(precision);
}

std::ostream& operator<<(std::ostream& out, const SymmMap& m)
{
    m.print(out);
    return out;
}
