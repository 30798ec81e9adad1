#pragma once

#include "TransformedSolid.h"

// A solid given in orthogonal coordinates (Angstroms), such as a slab about a plane: each point
// is taken through the cell's orthogonal matrix before the solid is asked.
class OrthogonalSolid : public TransformedSolid {
public:
    using TransformedSolid::TransformedSolid;
    bool contains(const Cell& cell, const Vector3D& fractional) const override;
    // The fractional box round the eight corners of the solid's orthogonal bounds.
    bool fractional_bounds(const Cell& cell, Vector3D& min, Vector3D& max) const override;
};
