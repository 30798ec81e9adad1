#include "Box.h"

#include "Archive.h"

#include <iomanip>
#include <ostream>

namespace {

constexpr double edge = 1e-7;

void print_three(std::ostream& out, const Vector3D& v)
{
    const auto flags = out.flags();
    const auto precision = out.precision();
    out << std::fixed << std::setprecision(3);
    for (int k = 0; k < 3; ++k)
        out << std::setw(8) << v[k];
    out.flags(flags);
    out.precision(precision);
}

} // namespace

bool Box::contains(const Vector3D& p) const
{
    for (int k = 0; k < 3; ++k)
        if (!(p[k] >= min[k] - edge && p[k] < max[k] - edge))
            return false;
    return true;
}

bool Box::bounds(Vector3D& low, Vector3D& high) const
{
    low = min;
    high = max;
    return true;
}

void Box::print(std::ostream& out) const
{
    out << "min: ";
    print_three(out, min);
    out << ", max:";
    print_three(out, max);
}

void Box::write(Archive& archive) const
{
    for (const Vector3D* v : {&min, &max})
        for (int k = 0; k < 3; ++k)
            archive.write_double((*v)[k]);
}

void Box::read(Archive& archive)
{
    Box b;
    for (Vector3D* v : {&b.min, &b.max})
        for (int k = 0; k < 3; ++k)
            (*v)[k] = archive.read_double();
    *this = b;
}
