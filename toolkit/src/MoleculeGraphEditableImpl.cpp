#include "MoleculeGraphEditableImpl.h"

#include "Atom3d.h"
#include "Bond3d.h"
#include "Logger.h"
#include "MoleculeError.h"
#include "Site.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

// Positions of symmetry copies that differ by no more than this in each fractional component
// are one point.
constexpr double same_point = 0.0001;

bool same_position(const Atom& a, const Atom& b)
{
    const Vector3D d = a.site()->frac - b.site()->frac;
    return std::fabs(d.x) <= same_point && std::fabs(d.y) <= same_point && std::fabs(d.z) <= same_point;
}

} // namespace

void MoleculeGraphEditableImpl::merge(const Molecule& other)
{
    logDebug(3, "Molecule::merge entered natoms=%d nbonds=%d", natoms(), nbonds());
    std::multimap<int32_t, HAtom> by_tag;
    for (int i = 0; i < natoms(); ++i)
        if (atom(i)->has_site())
            by_tag.emplace(atom(i)->symmtag(), atom(i));
    std::map<const Atom*, HAtom> mapped;
    for (int i = 0; i < other.natoms(); ++i) {
        const HAtom theirs = other.atom(i);
        HAtom ours;
        if (theirs->has_site()) {
            const auto range = by_tag.equal_range(theirs->symmtag());
            for (auto it = range.first; it != range.second && !ours; ++it)
                if (same_position(*it->second, *theirs))
                    ours = it->second;
        }
        if (!ours) {
            ours = HAtom(new Atom3d(*theirs));
            add_node(ours);
            if (theirs->has_site())
                by_tag.emplace(theirs->symmtag(), ours);
        }
        mapped[theirs.get()] = ours;
    }
    for (int i = 0; i < other.nbonds(); ++i) {
        const HBond theirs = other.bond(i);
        const HAtom a = mapped.at(theirs->atom1().get()), b = mapped.at(theirs->atom2().get());
        if (a != b && !has_bond_between(a, b))
            add_edge(HBond(new Bond3d(theirs->type())), a, b);
    }
    logDebug(3, "Molecule::merge completed natoms=%d nbonds=%d", natoms(), nbonds());
}

bool MoleculeGraphEditableImpl::has_bond_between(const HAtom& a, const HAtom& b) const
{
    return bond_index(atom_index(a), atom_index(b)) >= 0;
}

void MoleculeGraphEditableImpl::remove_hydrogens()
{
    for (int i = 0; i < natoms(); ++i) {
        const HAtom a = atom(i);
        if (a->element().atomic_number() == 1 && a->nbonds() == 1) {
            remove_atom(i);
            --i;
        }
    }
}

void MoleculeGraphEditableImpl::sort_atoms()
{
    std::vector<int> order(static_cast<std::size_t>(natoms()));
    for (int i = 0; i < natoms(); ++i)
        order[static_cast<std::size_t>(i)] = i;
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        return atom(a)->element().atomic_number() < atom(b)->element().atomic_number();
    });
    reorder_atoms(order);
}

void MoleculeGraphEditableImpl::reorder_atoms(const std::vector<int>& order)
{
    std::vector<bool> seen(static_cast<std::size_t>(natoms()), false);
    if (order.size() != seen.size())
        throw molecule_error("Molecule::reorder_atoms: the order must name every atom once.");
    std::vector<HAtom> atoms;
    for (int i : order) {
        if (i < 0 || i >= natoms() || seen[static_cast<std::size_t>(i)])
            throw molecule_error("Molecule::reorder_atoms: the order must name every atom once.");
        seen[static_cast<std::size_t>(i)] = true;
        atoms.push_back(atom(i));
    }
    reorder_nodes(atoms);
}

void MoleculeGraphEditableImpl::add(const HAtom& atom)
{
    add_node(atom);
}

void MoleculeGraphEditableImpl::add(const HBond& bond, const HAtom& atom1, const HAtom& atom2)
{
    add_edge(bond, atom1, atom2);
}

void MoleculeGraphEditableImpl::add(const Molecule& other)
{
    std::vector<HAtom> copies;
    for (int i = 0; i < other.natoms(); ++i) {
        copies.emplace_back(new Atom3d(*other.atom(i)));
        add_node(copies.back());
    }
    for (int i = 0; i < other.nbonds(); ++i) {
        const HBond b = other.bond(i);
        add_edge(HBond(new Bond3d(b->type())), copies[static_cast<std::size_t>(b->atom1()->index())],
                 copies[static_cast<std::size_t>(b->atom2()->index())]);
    }
}

void MoleculeGraphEditableImpl::remove_atom(int i)
{
    remove_node(atom(i));
}

void MoleculeGraphEditableImpl::remove(const HBond& bond)
{
    remove_edge(bond);
}

void MoleculeGraphEditableImpl::remove(const HAtom& atom)
{
    remove_node(atom);
}

void MoleculeGraphEditableImpl::remove_bond(int i)
{
    remove_edge(bond(i));
}

void MoleculeGraphEditableImpl::isolate(const HAtom& atom)
{
    for (const HBond& b : atom_bonds(atom))
        remove_edge(b);
}

void MoleculeGraphEditableImpl::clear()
{
    clear_graph();
}
