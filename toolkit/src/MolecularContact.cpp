#include "MolecularContact.h"

#include "Atom.h"

#include <ostream>

bool MolecularContact::intermolecular() const
{
    return molecule1 != molecule2;
}

bool MolecularContact::same_ends(const MolecularContact& o) const
{
    return from_map == o.from_map && from_atom == o.from_atom && symmmap == o.symmmap && to_atom == o.to_atom;
}

void MolecularContact::print(std::ostream& out) const
{
    out << (intermolecular() ? "Intermolecular contact between" : "Intramolecular contact between")
        << " Molecule "
        << "group [" << molecule1 << "] atom " << (atom1 ? atom1->label() : "") << " and "
        << " Molecule group [" << molecule2 << "] atom " << (atom2 ? atom2->label() : "");
    if (strength_set())
        out << "  Strength: " << strength();
}
