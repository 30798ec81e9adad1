#pragma once

#include "TransformedSolid.h"

#include <vector>

// The points that lie in every one of several solids, each in its own coordinates: a slab cut
// from a box of cells.
class TransformedSolidComposite : public TransformedSolid {
public:
    explicit TransformedSolidComposite(std::vector<HTransformedSolid> parts)
        : TransformedSolid(HSolid()), parts_(std::move(parts))
    {
    }
    bool contains(const Cell& cell, const Vector3D& fractional) const override;
    bool fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const override;

private:
    std::vector<HTransformedSolid> parts_;
};
