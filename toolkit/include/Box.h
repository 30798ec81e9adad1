#pragma once

#include "Solid.h"

// The box from min to max along each axis. The lower bound belongs to it and the upper does not
// (each within 1e-7), so that boxes that meet share no point: a box of one unit cell holds each
// copy whose centroid lies in the cell once.
class Box : public Solid {
public:
    Vector3D min;
    Vector3D max;

    Box() = default;
    Box(const Vector3D& min, const Vector3D& max) : min(min), max(max) {}

    HSolid clone() const override { return HSolid(new Box(*this)); }
    bool contains(const Vector3D& point) const override;
    bool bounds(Vector3D& low, Vector3D& high) const override;
    // "min: " and three numbers, then ", max:" and three more, each width 8, fixed, precision 3.
    void print(std::ostream& out) const override;
    void write(Archive& archive) const override;
    void read(Archive& archive) override;

    bool operator==(const Box& o) const { return min == o.min && max == o.max; }
};
