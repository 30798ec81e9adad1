#include "VisLibEditBondTypeCommand.h"

#include "GraphicsCrystal.h"

void VisLibEditBondTypeCommand::edit(const HGraphicsCrystal& crystal)
{
    if (const HGraphicsBond bond = graphicsBond(crystal, bond_))
        crystal->set_bond_type(*bond, type_);
}
