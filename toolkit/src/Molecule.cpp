#include "Molecule.h"

#include "Archive.h"
#include "MoleculeError.h"
#include "Site.h"

#include <ostream>

namespace {

[[noreturn]] void refuse(const std::string& operation, const char* verb)
{
    throw molecule_error("Molecule::" + operation + ": this molecule " + verb + " be edited.");
}

} // namespace

void Molecule::set_refcode(const std::string&)
{
    throw molecule_error("Molecule::set_refcode: cannot change refcode of this molecule.");
}

int Molecule::n_nonmetals() const
{
    int n = 0;
    for (int i = 0; i < natoms(); ++i)
        n += atom(i)->element().is_nonmetal() ? 1 : 0;
    return n;
}

int Molecule::n_hydrogens() const
{
    int n = 0;
    for (int i = 0; i < natoms(); ++i)
        n += atom(i)->element().atomic_number() == 1 ? 1 : 0;
    return n;
}

void Molecule::merge(const Molecule&)
{
    refuse("merge", "cannot");
}

void Molecule::remove_hydrogens()
{
    refuse("remove_hydrogens", "cannot");
}

void Molecule::sort_atoms()
{
    refuse("sort_atoms", "cannot");
}

void Molecule::reorder_atoms(const std::vector<int>&)
{
    refuse("reorder_atoms", "cannot");
}

void Molecule::add(const HAtom&)
{
    refuse("add", "can not");
}

void Molecule::add(const HBond&, const HAtom&, const HAtom&)
{
    refuse("add", "can not");
}

void Molecule::add(const Molecule&)
{
    refuse("add", "can not");
}

void Molecule::remove_atom(int)
{
    refuse("remove_atom", "can not");
}

void Molecule::remove(const HBond&)
{
    refuse("remove(bond)", "can not");
}

void Molecule::remove(const HAtom&)
{
    refuse("remove(atom)", "can not");
}

void Molecule::remove_bond(int)
{
    refuse("remove_bond", "can not");
}

void Molecule::isolate(const HAtom&)
{
    refuse("isolate", "can not");
}

void Molecule::clear()
{
    refuse("clear", "can not");
}

void Molecule::write(Archive&) const
{
    throw molecule_error("Molecule::write: this molecule cannot be stored.");
}

void Molecule::read(Archive&)
{
    refuse("read", "cannot");
}

void Molecule::print(std::ostream& out) const
{
    out << "refcode: " << refcode() << ", natoms: " << natoms() << ", nbonds: " << nbonds() << '\n';
    for (int i = 0; i < natoms(); ++i)
        out << "  atom " << i << ": " << *atom(i) << '\n';
    for (int i = 0; i < nbonds(); ++i)
        out << "  bond " << i << ": " << *bond(i) << '\n';
}

std::ostream& operator<<(std::ostream& out, const Molecule& molecule)
{
    molecule.print(out);
    return out;
}

Vector3D Molecule::centroid() const
{
    Vector3D sum;
    int n = 0;
    for (int i = 0; i < natoms(); ++i) {
        const HAtom a = atom(i);
        if (a->has_site()) {
            sum += a->site()->frac;
            ++n;
        }
    }
    return n ? sum / n : sum;
}
