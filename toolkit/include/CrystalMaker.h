#pragma once

#include "Cell.h"
#include "Molecule.h"

#include <string>
#include <vector>

class Archive;
class CrystalMaker;
using HCrystalMaker = THandle<CrystalMaker>;

// The recipe of a crystal: a cell and the molecules of the asymmetric unit, completed across
// symmetry elements, with the choice of which of them are in force. Molecules drawn in two
// dimensions are paired with those in three; a structure read from coordinates has only the
// latter.
class CrystalMaker : public Cell {
public:
    CrystalMaker();
    // Shares the molecules: a working copy that edits none of them costs nothing per molecule.
    CrystalMaker(const CrystalMaker& other);
    // A copy with molecules of its own, which later edits of these do not reach.
    HCrystalMaker deep_copy() const;
    // Both end with the connectivity search, so that each molecule is whole.
    CrystalMaker(const Cell& cell, const std::vector<HMolecule>& molecules_2d,
                 const std::vector<HMolecule>& molecules_3d);
    CrystalMaker(const std::string& refcode, const Cell& cell, const std::vector<HMolecule>& molecules_2d,
                 const std::vector<HMolecule>& molecules_3d);
    ~CrystalMaker() override;

    const std::string& refcode() const { return refcode_; }
    int nmolecules() const { return static_cast<int>(molecules_.size()); }
    const HMolecule& molecule(int i) const { return molecules_.at(static_cast<std::size_t>(i)); }
    const std::vector<HMolecule>& molecules() const { return molecules_; }
    // Whether the search found the molecule to go on for ever (a chain, a sheet, a framework):
    // it holds one repeat of the polymer.
    bool polymeric(int i) const { return polymeric_.at(static_cast<std::size_t>(i)); }

    const std::vector<int>& selection() const { return selection_; }
    // Fails with "Invalid Selection!" for a number outside the list.
    void set_selection(const std::vector<int>& selection);
    // The molecules in force, in the order of the selection.
    std::vector<HMolecule> selected() const;

    // Adds a molecule, or appends to the list a set of molecules: no search is run.
    void add_molecule(const HMolecule& molecule, bool polymeric = false);
    void replace_molecules(const std::vector<HMolecule>& molecules, const std::vector<bool>& polymeric);

    // Bonds and atoms of the molecules in force; an atom or bond of none of them fails with
    // "CrystalMaker::add(HBond, HAtom, HAtom): atom1 is not in any of the currently-selected
    // molecules" and its like.
    void add(const HBond& bond, const HAtom& atom1, const HAtom& atom2);
    void remove(const HAtom& atom);
    void remove(const HBond& bond);

    // Finds bonds that reach across symmetry elements and lattice translations, and completes
    // the molecules they join: a molecule on a mirror gets its other half, a polymer one repeat.
    // Symmetry copies of one molecule are kept once.
    void symmetry_connectivity_search();

    void write(Archive& archive) const override;
    void read(Archive& archive) override;
    void print(std::ostream& out) const override;

private:
    int molecule_of(const HAtom& atom) const;
    void drop_symmetry_copies();

    std::string refcode_;
    std::vector<HMolecule> molecules_;
    std::vector<bool> polymeric_;
    std::vector<int> selection_;
    // Pairs of two- and three-dimensional molecules; every molecule read from coordinates alone
    // is an unmatched three-dimensional one.
    std::vector<HMolecule> matched_;
    std::vector<HMolecule> unmatched_2d_;
};
