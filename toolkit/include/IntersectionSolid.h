#pragma once

#include "Solid.h"

#include <vector>

// The points that lie in every one of several solids given in the same coordinates.
class IntersectionSolid : public Solid {
public:
    IntersectionSolid() = default;
    explicit IntersectionSolid(std::vector<HSolid> solids) : solids_(std::move(solids)) {}

    void add(const HSolid& solid) { solids_.push_back(solid); }
    HSolid clone() const override;
    bool contains(const Vector3D& point) const override;
    // The overlap of the bounds of those that have bounds; none when none has.
    bool bounds(Vector3D& min, Vector3D& max) const override;
    void print(std::ostream& out) const override;

private:
    std::vector<HSolid> solids_;
};
