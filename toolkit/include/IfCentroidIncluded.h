#pragma once

#include "SymmetryInclusionCondition.h"

// A copy belongs when its centroid lies in the region: each molecule appears once per unit cell.
class IfCentroidIncluded : public SymmetryInclusionCondition {
public:
    std::string name() const override { return "IfCentroidIncluded"; }

protected:
    bool included(const Cell& cell, const std::vector<Vector3D>&, const Vector3D& centroid,
                  const TransformedSolid& solid) const override;
    bool by_centroid() const override { return true; }
};
