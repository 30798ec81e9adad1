#pragma once

#include "MoleculeGraphImpl.h"

#include <map>

// A read-only view of some atoms of a molecule and the bonds among them, through proxies: it
// answers questions of rings and neighbours within the chosen part, and follows the parent's
// values while the parent lives.
class MoleculeSubset : public MoleculeGraphImpl {
public:
    MoleculeSubset(const HMolecule& parent, const std::vector<int>& atoms);

    std::string refcode() const override { return refcode_; }
    HMolecule clone() const override;
    void print(std::ostream& out) const override;

    // The parent's atom behind an atom of the subset; null for an atom that is not one, or whose
    // parent atom has gone.
    HAtom parent_atom(const HAtom& atom) const;

private:
    std::string refcode_;
    // The parent's atoms and bonds are not kept alive by a view of them.
    std::map<HAtom, TWeakHandle<Atom>> atom_sub_mol;
    std::vector<TWeakHandle<Bond>> bond_vec;
};
