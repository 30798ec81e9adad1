#include "VisLibAddBondCommand.h"

#include "GraphicsCrystal.h"

void VisLibAddBondCommand::edit(const HGraphicsCrystal& crystal)
{
    const HGraphicsAtom a = graphicsAtom(crystal, atom1_), b = graphicsAtom(crystal, atom2_);
    if (a && b)
        crystal->add_bond(*a, *b, type_);
}
