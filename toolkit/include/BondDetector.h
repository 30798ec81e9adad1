#pragma once

#include "Element.h"
#include "MoleculeHandles.h"
#include "Vector3D.h"

#include <utility>
#include <vector>

class Cell;

// Finds bonds from coordinates. Two atoms are bonded when their distance is at least 0.55
// Angstrom and below the sum of their bonding radii plus 0.45, unless both are hydrogen; an
// element of radius 0 bonds to nothing. A pruning pass then takes out the false bonds that close
// three-membered rings: a contact across a bond angle, a metal reaching past a chelating oxygen
// to the carbon or boron behind it, two metals that only share a bridging atom.
class BondDetector {
public:
    using Pairs = std::vector<std::pair<int, int>>;

    // Only mode 0 exists; any other fails with "BondDetector::Mode not implemented!".
    explicit BondDetector(int mode = 0);

    // The rule for one pair at a given distance.
    static bool bonded(double distance, const Element& a, const Element& b);

    // The bonded pairs (i < j, in order) among the atoms that have sites, measured in the cell's
    // orthogonal frame, after pruning.
    Pairs detect(const std::vector<HAtom>& atoms, const Cell& cell) const;
    // The same for plain positions (orthogonal, Angstroms); a position that is not finite bonds
    // to nothing. Atoms are binned in a grid of cells as wide as the longest possible bond, so
    // only neighbouring cells are compared: the work grows with the atoms, not their square.
    static Pairs detect_positions(const std::vector<Vector3D>& positions,
                                  const std::vector<Element>& elements);
    // The plain loop over every pair, the rule in its simplest form: the grid must give the same.
    static Pairs detect_all_pairs(const std::vector<Vector3D>& positions,
                                  const std::vector<Element>& elements);

    // The pairs that pruning keeps, in their order.
    static Pairs prune(const Pairs& pairs, const std::vector<Vector3D>& positions,
                       const std::vector<Element>& elements);
    // Takes the false bonds out of a molecule whose atoms have sites.
    static void prune(Molecule& molecule, const Cell& cell);
};
