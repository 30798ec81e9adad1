#include "SymmMap.h"

#include "Archive.h"

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

void SymmMap::write(Archive& archive) const
{
    archive.write_int32(id);
    archive.write_int32(op);
    archive.write_double(trans.x);
    archive.write_double(trans.y);
    archive.write_double(trans.z);
}

void SymmMap::read(Archive& archive)
{
    // Into locals first, so that a truncated archive leaves the map as it was.
    const int32_t i = archive.read_int32();
    const int32_t o = archive.read_int32();
    const double x = archive.read_double(), y = archive.read_double(), z = archive.read_double();
    id = i;
    op = o;
    trans = Vector3D(x, y, z);
}
