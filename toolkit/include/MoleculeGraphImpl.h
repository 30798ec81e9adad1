#pragma once

#include "Molecule.h"
#include "OrderedGraph.h"

#include <map>

// A molecule held as a graph: atoms are its nodes and bonds its edges, numbered in the order they
// came. It answers every question of the Molecule interface and the questions its atoms and bonds
// ask of it; it changes only through subclasses, which check every change here.
class MoleculeGraphImpl : public Molecule {
public:
    using AtomGraph = OrderedGraph<HAtom, HBond>;

    MoleculeGraphImpl();
    // Its atoms and bonds may outlive it; they leave the graph first.
    ~MoleculeGraphImpl() override;
    MoleculeGraphImpl(const MoleculeGraphImpl&) = delete;
    MoleculeGraphImpl& operator=(const MoleculeGraphImpl&) = delete;

    int natoms() const override { return graph_->node_count(); }
    HAtom atom(int i) const override { return graph_->nodes().value(i); }
    bool has_atom(const HAtom& atom) const override;
    AtomIterator atoms_begin() const override;
    AtomIterator atoms_end() const override;
    int nbonds() const override { return graph_->edge_count(); }
    HBond bond(int i) const override { return graph_->edges().value(i); }
    HBond bond(const HAtom& atom1, const HAtom& atom2) const override;
    bool has_bond(const HBond& bond) const override;
    BondIterator bonds_begin() const override;
    BondIterator bonds_end() const override;
    std::vector<int> neighbours(int i) const override;
    int bond_index(int i, int j) const override;

    // What the atoms and bonds of this graph ask of it.
    int atom_index(const HAtom& atom) const { return graph_->node_index(atom); }
    int atom_nbonds(const HAtom& atom) const { return graph_->degree(atom); }
    bool atom_cyclic(const HAtom& atom) const { return ring_size(atom) > 0; }
    std::vector<HAtom> atom_neighbours(const HAtom& atom) const;
    std::vector<HBond> atom_bonds(const HAtom& atom) const;
    HAtom bond_atom1(const HBond& bond) const { return graph_->edge_node_id1(bond); }
    HAtom bond_atom2(const HBond& bond) const { return graph_->edge_node_id2(bond); }
    int bond_index(const HBond& bond) const { return graph_->edge_index(bond); }
    bool bond_cyclic(const HBond& bond) const { return graph_->is_edge_cyclic(bond); }

    // The size of the smallest ring through an atom or a bond, 0 for none. An atom's answer is
    // kept until the molecule changes.
    int ring_size(const HAtom& atom) const;
    int ring_size(const HBond& bond) const;
    // The atoms of that smallest ring.
    std::vector<HAtom> smallest_ring(const HAtom& atom) const;

protected:
    void add_node(const HAtom& atom);
    void add_edge(const HBond& bond, const HAtom& atom1, const HAtom& atom2);
    void remove_node(const HAtom& atom);
    void remove_edge(const HBond& bond);
    void reorder_nodes(const std::vector<HAtom>& order);
    void clear_graph();

private:
    void changed() { atom_rings_.clear(); }

    THandle<AtomGraph> graph_;
    mutable std::map<HAtom, int> atom_rings_;
};
