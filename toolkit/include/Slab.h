#pragma once

#include "Plane.h"
#include "Solid.h"

// The points within half a thickness of a plane on either side. It has no bounds of its own: a
// slab is cut from something packed.
class Slab : public Solid {
public:
    Plane plane;
    double half_thickness = 0.0;

    Slab() = default;
    Slab(const Plane& plane, double half_thickness) : plane(plane), half_thickness(half_thickness) {}

    HSolid clone() const override { return HSolid(new Slab(*this)); }
    bool contains(const Vector3D& point) const override;
    bool bounds(Vector3D&, Vector3D&) const override { return false; }
    void print(std::ostream& out) const override;
    void write(Archive& archive) const override;
    void read(Archive& archive) override;
};
