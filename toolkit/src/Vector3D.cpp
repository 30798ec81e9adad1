#include "Vector3D.h"

#include "MoleculeError.h"

#include <cmath>
#include <ostream>

double Vector3D::length() const
{
    return std::sqrt(x * x + y * y + z * z);
}

double Vector3D::dot(const Vector3D& o) const
{
    return x * o.x + y * o.y + z * o.z;
}

Vector3D Vector3D::cross(const Vector3D& o) const
{
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
}

Vector3D Vector3D::normalized() const
{
    const double len = length();
    if (len == 0.0)
        throw molecule_error("Cannot normalize a zero length Vector3D");
    return *this / len;
}

void Vector3D::normalize()
{
    *this = normalized();
}

void Vector3D::set_length(double new_length)
{
    const double len = length();
    if (len == 0.0)
        throw molecule_error("Cannot set the length of a zero vector.");
    *this = *this * (new_length / len);
}

Vector3D& Vector3D::operator+=(const Vector3D& o)
{
    x += o.x;
    y += o.y;
    z += o.z;
    return *this;
}

Vector3D& Vector3D::operator-=(const Vector3D& o)
{
    x -= o.x;
    y -= o.y;
    z -= o.z;
    return *this;
}

std::ostream& operator<<(std::ostream& out, const Vector3D& v)
{
    return out << v.x << " " << v.y << " " << v.z;
}
