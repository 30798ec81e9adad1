#include "MoleculeSubset.h"

#include "Molecule3d.h"
#include "MoleculeError.h"
#include "ProxyAtom.h"
#include "ProxyBond.h"

#include <ostream>

MoleculeSubset::MoleculeSubset(const HMolecule& parent, const std::vector<int>& atoms)
    : refcode_(parent->refcode())
{
    std::map<const Atom*, HAtom> proxies;
    for (int i : atoms) {
        const HAtom real = parent->atom(i);
        if (proxies.count(real.get()))
            continue;
        const HAtom proxy(new ProxyAtom(real));
        add_node(proxy);
        atom_sub_mol.emplace(proxy, real);
        proxies.emplace(real.get(), proxy);
    }
    for (int i = 0; i < parent->nbonds(); ++i) {
        const HBond real = parent->bond(i);
        const auto a = proxies.find(real->atom1().get()), b = proxies.find(real->atom2().get());
        if (a == proxies.end() || b == proxies.end())
            continue;
        add_edge(HBond(new ProxyBond(real)), a->second, b->second);
        bond_vec.push_back(real);
    }
}

HMolecule MoleculeSubset::clone() const
{
    THandle<Molecule3d> copy(new Molecule3d);
    copy->set_refcode(refcode_);
    copy->add(*this);
    return copy;
}

HAtom MoleculeSubset::parent_atom(const HAtom& atom) const
{
    const auto it = atom_sub_mol.find(atom);
    return it == atom_sub_mol.end() ? HAtom() : it->second.lock();
}

void MoleculeSubset::print(std::ostream& out) const
{
    out << "atom_sub_mol:";
    for (int i = 0; i < natoms(); ++i)
        out << ' ' << atom(i)->label();
    out << "\nbond_vec: " << bond_vec.size() << '\n';
}
