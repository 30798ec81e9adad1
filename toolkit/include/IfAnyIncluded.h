#pragma once

#include "SymmetryInclusionCondition.h"

// A copy belongs when any of its atoms lies in the region: nothing that reaches in is cut off.
class IfAnyIncluded : public SymmetryInclusionCondition {
public:
    std::string name() const override { return "IfAnyIncluded"; }

protected:
    bool included(const Cell& cell, const std::vector<Vector3D>& atoms, const Vector3D&,
                  const TransformedSolid& solid) const override;
    bool by_centroid() const override { return false; }
};
