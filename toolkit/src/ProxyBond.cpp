#include "ProxyBond.h"

#include "MoleculeError.h"

BondType ProxyBond::type() const
{
    const HBond bond = real_.lock();
    if (!bond)
        throw molecule_error("ProxyBond::type - bond is no longer valid");
    return bond->type();
}
