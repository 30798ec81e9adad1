#pragma once

#include <iosfwd>

class Vector3D {
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Vector3D() = default;
    Vector3D(double x, double y, double z) : x(x), y(y), z(z) {}

    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }

    double length() const;
    double dot(const Vector3D& other) const;
    Vector3D cross(const Vector3D& other) const;
    // Both fail on a zero vector, which has no direction to keep.
    Vector3D normalized() const;
    void normalize();
    void set_length(double length);

    Vector3D operator+(const Vector3D& o) const { return {x + o.x, y + o.y, z + o.z}; }
    Vector3D operator-(const Vector3D& o) const { return {x - o.x, y - o.y, z - o.z}; }
    Vector3D operator-() const { return {-x, -y, -z}; }
    Vector3D operator*(double s) const { return {x * s, y * s, z * s}; }
    Vector3D operator/(double s) const { return {x / s, y / s, z / s}; }
    Vector3D& operator+=(const Vector3D& o);
    Vector3D& operator-=(const Vector3D& o);
    bool operator==(const Vector3D& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const Vector3D& o) const { return !(*this == o); }
};

using Point = Vector3D;

std::ostream& operator<<(std::ostream& out, const Vector3D& v);
