#pragma once

#include "MoleculeGraphImpl.h"

// The editing half of a molecule graph: every change of the Molecule interface, each checked by
// the graph underneath.
class MoleculeGraphEditableImpl : public MoleculeGraphImpl {
public:
    bool editable() const override { return true; }
    void merge(const Molecule& other) override;
    void remove_hydrogens() override;
    void sort_atoms() override;
    void add(const HAtom& atom) override;
    void add(const HBond& bond, const HAtom& atom1, const HAtom& atom2) override;
    void add(const Molecule& other) override;
    void remove_atom(int i) override;
    void remove(const HBond& bond) override;
    void remove(const HAtom& atom) override;
    void remove_bond(int i) override;
    void isolate(const HAtom& atom) override;
    void clear() override;
    void reorder_atoms(const std::vector<int>& order) override;

private:
    bool has_bond_between(const HAtom& a, const HAtom& b) const;
};
