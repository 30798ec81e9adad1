#pragma once

#include "Molecule.h"
#include "SymmMap.h"

#include <string>
#include <vector>

class Cell;
class TransformedSolid;
class SymmetryInclusionCondition;
using HSymmetryInclusionCondition = THandle<SymmetryInclusionCondition>;

// Decides which symmetry copies of molecules belong to a region. Every operator of the cell and
// every lattice translation that can bring a copy into the region is tried; a copy that another
// operator already gave (a molecule on a symmetry element) is kept once.
class SymmetryInclusionCondition {
public:
    virtual ~SymmetryInclusionCondition() = default;
    // Fails for an unbounded region, and for one that would need more than a million lattice
    // translations for one molecule.
    // Each copy is a map whose id is the molecule's place in the list.
    std::vector<SymmMap> copies(const Cell& cell, const std::vector<HMolecule>& molecules,
                                const TransformedSolid& solid) const;
    virtual std::string name() const = 0;
    // "IfCentroidIncluded" or "IfAnyIncluded"; null for any other word.
    static HSymmetryInclusionCondition by_name(const std::string& name);

protected:
    // Whether the copy whose atoms are at these fractional positions belongs.
    virtual bool included(const Cell& cell, const std::vector<Vector3D>& atoms, const Vector3D& centroid,
                          const TransformedSolid& solid) const = 0;
    // Whether the translation range follows the centroid alone or all the atoms.
    virtual bool by_centroid() const = 0;
};
