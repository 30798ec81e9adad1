#include "VisLibRemoveBondCommand.h"

#include "GraphicsCrystal.h"

void VisLibRemoveBondCommand::edit(const HGraphicsCrystal& crystal)
{
    if (const HGraphicsBond bond = graphicsBond(crystal, bond_))
        crystal->remove_bond(*bond);
}
