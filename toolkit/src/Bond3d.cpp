#include "Bond3d.h"

#include "MoleculeError.h"

Bond3d::Bond3d(BondType type) : type_(BondUnknown)
{
    set_type(type);
}

void Bond3d::set_type(BondType type)
{
    if (!editable_)
        Bond::set_type(type);
    if (type < BondUnknown || type > BondPi)
        throw molecule_error("Bond3d::set_type: Illegal bond type.");
    type_ = type;
}
