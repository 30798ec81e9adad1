#include "BasicContact.h"

#include "Atom.h"
#include "MoleculeError.h"

#include <ostream>

double BasicContact::strength() const
{
    if (!strength_set_)
        throw molecule_error("BasicContact - attempt to access unset contact strength");
    return strength_;
}

void BasicContact::print(std::ostream& out) const
{
    out << "contact from group [" << molecule1 << "] atom " << (atom1 ? atom1->label() : "") << " to group ["
        << molecule2 << "] atom " << (atom2 ? atom2->label() : "");
    if (strength_set_)
        out << "  Strength: " << strength_;
}
