#include "BondedCriterion.h"

#include "BondDetector.h"
#include "Molecule.h"

bool BondedCriterion::contact(const ContactSide& a, int i, const ContactSide& b, int j, double distance,
                              double& strength) const
{
    const Element ea = a.molecule->atom(i)->element(), eb = b.molecule->atom(j)->element();
    if (!is_active() || !BondDetector::bonded(distance, ea, eb))
        return false;
    strength = distance - Element::max_bond_distance(ea, eb);
    return true;
}
