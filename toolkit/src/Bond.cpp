#include "Bond.h"

#include "Archive.h"
#include "MoleculeError.h"

#include <ostream>

void Bond::set_type(BondType)
{
    throw molecule_error("Bond::set_type Cannot modify this bond");
}

bool Bond::rotatable() const
{
    return type() == BondSingle && atom1()->nbonds() > 1 && atom2()->nbonds() > 1 && !cyclic();
}

HAtom Bond::other_atom(const HAtom& atom) const
{
    if (!atom)
        throw molecule_error("Bond::other_atom(HAtom) atom is a null pointer");
    const HAtom a = atom1(), b = atom2();
    if (atom == a)
        return b;
    if (atom == b)
        return a;
    throw molecule_error("Bond::other_atom(HAtom) atom is not in this bond");
}

HAtom Bond::other_atom(const Atom& atom) const
{
    const HAtom a = atom1(), b = atom2();
    if (&atom == a.get())
        return b;
    if (&atom == b.get())
        return a;
    throw molecule_error("Bond::other_atom(const Atom& atom) atom is not in this bond");
}

void Bond::print(std::ostream& out) const
{
    out << "type: " << type() << ", atom1: " << atom1()->label() << ", atom2: " << atom2()->label();
}

std::ostream& operator<<(std::ostream& out, const Bond& bond)
{
    bond.print(out);
    return out;
}

// The ends are written by the molecule, which knows their numbers; a bond writes its kind.
void Bond::write(Archive& archive) const
{
    archive.write_int32(type());
}

void Bond::read(Archive& archive)
{
    const int32_t type = archive.read_int32();
    if (type < BondUnknown || type > BondPi)
        throw molecule_error("Bond3d::set_type: Illegal bond type.");
    set_type(static_cast<BondType>(type));
}
