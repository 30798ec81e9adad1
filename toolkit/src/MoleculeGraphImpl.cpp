#include "MoleculeGraphImpl.h"

#include "AtomInGraph.h"
#include "BondInGraph.h"
#include "MoleculeError.h"

#include <set>

namespace {

AtomInGraph* in_graph(const HAtom& atom)
{
    auto* a = dynamic_cast<AtomInGraph*>(atom.get());
    if (!a)
        throw molecule_error("MoleculeGraphImpl - Illegal type of atom stored");
    return a;
}

BondInGraph* in_graph(const HBond& bond)
{
    auto* b = dynamic_cast<BondInGraph*>(bond.get());
    if (!b)
        throw molecule_error("MoleculeGraphImpl - Illegal type of bond stored");
    return b;
}

} // namespace

MoleculeGraphImpl::MoleculeGraphImpl() : graph_(new AtomGraph)
{
}

MoleculeGraphImpl::~MoleculeGraphImpl()
{
    clear_graph();
}

bool MoleculeGraphImpl::has_atom(const HAtom& atom) const
{
    if (!atom)
        throw molecule_error("MoleculeGraphImpl::has_atom(HAtom) atom is a null pointer");
    return graph_->has_node(atom);
}

bool MoleculeGraphImpl::has_bond(const HBond& bond) const
{
    if (!bond)
        throw molecule_error("MoleculeGraphImpl::has_bond(HBond) bond is a null pointer");
    return graph_->has_edge(bond);
}

Molecule::AtomIterator MoleculeGraphImpl::atoms_begin() const
{
    return PolymorphicIteratorImpl<HAtom, IndexedTable<HAtom>::const_iterator>::make(graph_->nodes().begin());
}

Molecule::AtomIterator MoleculeGraphImpl::atoms_end() const
{
    return PolymorphicIteratorImpl<HAtom, IndexedTable<HAtom>::const_iterator>::make(graph_->nodes().end());
}

Molecule::BondIterator MoleculeGraphImpl::bonds_begin() const
{
    return PolymorphicIteratorImpl<HBond, IndexedTable<HBond>::const_iterator>::make(graph_->edges().begin());
}

Molecule::BondIterator MoleculeGraphImpl::bonds_end() const
{
    return PolymorphicIteratorImpl<HBond, IndexedTable<HBond>::const_iterator>::make(graph_->edges().end());
}

HBond MoleculeGraphImpl::bond(const HAtom& atom1, const HAtom& atom2) const
{
    const char* prefix = "Molecule::bond(HAtom, HAtom) ";
    if (!atom1)
        throw molecule_error(std::string(prefix) + "atom1 is a null pointer");
    if (!atom2)
        throw molecule_error(std::string(prefix) + "atom2 is a null pointer");
    if (!graph_->has_node(atom1))
        throw molecule_error(std::string(prefix) + "atom1 is not in this molecule");
    if (!graph_->has_node(atom2))
        throw molecule_error(std::string(prefix) + "atom2 is not in this molecule");
    if (!graph_->joined(atom1, atom2))
        throw molecule_error(std::string(prefix) + "no bond between atom1 and atom2 in this molecule");
    return graph_->edge_id(atom1, atom2);
}

std::vector<int> MoleculeGraphImpl::neighbours(int i) const
{
    std::vector<int> out;
    for (const HAtom& n : atom_neighbours(atom(i)))
        out.push_back(graph_->node_index(n));
    return out;
}

int MoleculeGraphImpl::bond_index(int i, int j) const
{
    const HAtom a = atom(i), b = atom(j);
    return graph_->joined(a, b) ? graph_->edge_index(graph_->edge_id(a, b)) : -1;
}

std::vector<HAtom> MoleculeGraphImpl::atom_neighbours(const HAtom& atom) const
{
    return std::vector<HAtom>(graph_->node_begin_neighbours(atom), graph_->node_end_neighbours(atom));
}

std::vector<HBond> MoleculeGraphImpl::atom_bonds(const HAtom& atom) const
{
    return graph_->node_edges(atom);
}

int MoleculeGraphImpl::ring_size(const HAtom& atom) const
{
    const auto known = atom_rings_.find(atom);
    if (known != atom_rings_.end())
        return known->second;
    std::set<HAtom> ring;
    const int size = graph_->node_smallest_ring(atom, ring);
    atom_rings_.emplace(atom, size);
    return size;
}

int MoleculeGraphImpl::ring_size(const HBond& bond) const
{
    int size = 0;
    graph_->is_edge_cyclic(bond, &size);
    return size;
}

std::vector<HAtom> MoleculeGraphImpl::smallest_ring(const HAtom& atom) const
{
    std::set<HAtom> ring;
    graph_->node_smallest_ring(atom, ring);
    std::vector<HAtom> out(ring.begin(), ring.end());
    std::sort(out.begin(), out.end(),
              [this](const HAtom& a, const HAtom& b) { return atom_index(a) < atom_index(b); });
    return out;
}

void MoleculeGraphImpl::add_node(const HAtom& atom)
{
    if (!atom)
        throw molecule_error("MoleculeGraphImpl::add_node(HAtom) atom is a null pointer");
    AtomInGraph* a = in_graph(atom);
    if (a->graph() && a->graph() != this)
        throw molecule_error(
            "MoleculeGraphImpl::add_node(HAtom) atom is already in another MoleculeGraphImpl object");
    if ((a->graph() == this) != graph_->has_node(atom))
        throw molecule_error("MoleculeGraphImpl::add_node(HAtom) mismatch between atom and graph data");
    if (a->graph() == this)
        return;
    graph_->add_node(atom);
    a->set_graph(this, atom);
    changed();
}

void MoleculeGraphImpl::add_edge(const HBond& bond, const HAtom& atom1, const HAtom& atom2)
{
    const std::string prefix = "MoleculeGraphImpl::add_edge(HBond, HAtom, HAtom) ";
    const auto fail = [&](const char* why) { throw molecule_error(prefix + why); };
    if (!bond)
        fail("bond is a null pointer");
    BondInGraph* b = in_graph(bond);
    if (b->graph() && b->graph() != this)
        fail("bond is already in another MoleculeGraphImpl object");
    if (!atom1)
        fail("atom1 is a null pointer");
    AtomInGraph* a1 = in_graph(atom1);
    if (a1->graph() && a1->graph() != this)
        fail("atom1 is already in another MoleculeGraphImpl object");
    if (!atom2)
        fail("atom2 is a null pointer");
    AtomInGraph* a2 = in_graph(atom2);
    if (a2->graph() && a2->graph() != this)
        fail("atom2 is already in another MoleculeGraphImpl object");
    if (atom1 == atom2)
        fail("an atom cannot be bonded to itself");
    if ((b->graph() == this) != graph_->has_edge(bond) || (a1->graph() == this) != graph_->has_node(atom1) ||
        (a2->graph() == this) != graph_->has_node(atom2))
        fail("mismatch between atom, bond and graph data");
    if (graph_->has_node(atom1) && graph_->has_node(atom2) && graph_->joined(atom1, atom2) &&
        graph_->edge_id(atom1, atom2) != bond)
        fail("atom1 and atom2 are already in a different bond in this MoleculeGraphImpl object");
    if (graph_->has_edge(bond)) {
        const HAtom e1 = graph_->edge_node_id1(bond), e2 = graph_->edge_node_id2(bond);
        if (!((e1 == atom1 && e2 == atom2) || (e1 == atom2 && e2 == atom1)))
            fail("bond is already present in this MoleculeGraphImpl object, but involving different atoms");
        return;
    }
    add_node(atom1);
    add_node(atom2);
    graph_->add_edge(bond, atom1, atom2);
    b->set_graph(this, bond);
    changed();
}

void MoleculeGraphImpl::remove_node(const HAtom& given)
{
    // A copy: the handle given may be the graph's own, which the removal lets go.
    const HAtom atom = given;
    if (!atom)
        throw molecule_error("MoleculeGraphImpl::remove_node(HAtomInGraph) atom is a null pointer");
    if (!graph_->has_node(atom))
        return;
    for (const HBond& b : std::vector<HBond>(graph_->node_edges(atom)))
        remove_edge(b);
    graph_->remove_node(atom);
    in_graph(atom)->set_graph(nullptr, HAtom());
    changed();
}

void MoleculeGraphImpl::remove_edge(const HBond& given)
{
    const HBond bond = given;
    if (!bond)
        throw molecule_error("MoleculeGraphImpl::remove_edge(HBondInGraph) bond is a null pointer");
    if (!graph_->has_edge(bond))
        return;
    graph_->remove_edge(bond);
    in_graph(bond)->set_graph(nullptr, HBond());
    changed();
}

void MoleculeGraphImpl::reorder_nodes(const std::vector<HAtom>& order)
{
    graph_->reorder_nodes(order);
}

void MoleculeGraphImpl::clear_graph()
{
    for (const HBond& b : graph_->edges())
        in_graph(b)->set_graph(nullptr, HBond());
    for (const HAtom& a : graph_->nodes())
        in_graph(a)->set_graph(nullptr, HAtom());
    graph_ = THandle<AtomGraph>(new AtomGraph);
    changed();
}
