#include "VisLibMoleculeSelectionCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"

VisLibMoleculeSelectionCommand::VisLibMoleculeSelectionCommand(QtCrystalManager* manager,
                                                               const HGraphicsCrystal& crystal,
                                                               const HGraphicsAtom& atom, bool select)
    : VisLibSelectionCommand(manager, select ? "Select Molecule" : "Deselect Molecule"),
      crystal_(graphicsCrystalIdentifier(crystal)), molecule_(crystal->molecule_index(*atom)), select_(select)
{
}

void VisLibMoleculeSelectionCommand::execute(const HGraphicsCrystal& crystal)
{
    if (static_cast<int32_t>(crystal->number()) != crystal_)
        return;
    for (const HGraphicsAtom& atom : crystal->molecule_atoms(molecule_))
        atom->set_selected(select_);
    crystal->changed();
}
