#include "VisLibRemoveAtomCommand.h"

#include "GraphicsCrystal.h"

void VisLibRemoveAtomCommand::edit(const HGraphicsCrystal& crystal)
{
    if (const HGraphicsAtom atom = graphicsAtom(crystal, atom_))
        crystal->remove_atom(*atom);
}
