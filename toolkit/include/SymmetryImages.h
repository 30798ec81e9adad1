#pragma once

#include "Cell.h"
#include "MoleculeHandles.h"
#include "SymmMap.h"
#include "Transformation.h"

#include <map>
#include <utility>

// The arithmetic of symmetry copies in one cell: the operator of a map, the map of one image
// taken after another, and the copy of a molecule that a map makes. The cell's operators must
// form a group; a product that is none of them fails with "SymmetryImages: the symmetry
// operators do not form a group".
class SymmetryImages {
public:
    explicit SymmetryImages(const Cell& cell);

    const Cell& cell() const { return cell_; }
    // The operator that is the identity, up to a lattice translation.
    int identity() const { return identity_; }
    SymmMap identity_map(int32_t id) const { return SymmMap(id, identity_, {}); }
    Transformation transformation(const SymmMap& map) const;
    // The map whose operator is t, with the given id; fails when t is no operator of the cell.
    SymmMap map_of(const Transformation& t, int32_t id) const;
    // The map of `outer` taken after `inner`, with the id of `outer`.
    SymmMap compose(const SymmMap& outer, const SymmMap& inner) const;
    // A new molecule whose atoms are those of `molecule` moved by `map`; each atom's own map is
    // composed with it, so that it still says how it came from the asymmetric unit.
    HMolecule copy(const Molecule& molecule, const SymmMap& map) const;
    // Whether some power of q is the identity, translation and all: true for the symmetry of a
    // finite molecule, false for a step along a chain.
    static bool finite_order(const Transformation& q);

private:
    std::pair<int, Vector3D> product(int outer, int inner) const;

    const Cell& cell_;
    int identity_ = 0;
    mutable std::map<std::pair<int, int>, std::pair<int, Vector3D>> products_;
};
