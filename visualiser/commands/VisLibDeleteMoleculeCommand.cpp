#include "VisLibDeleteMoleculeCommand.h"

#include "GraphicsCrystal.h"

VisLibDeleteMoleculeCommand::VisLibDeleteMoleculeCommand(QtCrystalManager* manager,
                                                         const HGraphicsCrystal& crystal,
                                                         const HGraphicsAtom& atom)
    : VisLibSnapshotCommand(manager, "Delete Molecule"), crystal_(graphicsCrystalIdentifier(crystal)),
      molecule_(crystal->molecule_index(*atom))
{
}

void VisLibDeleteMoleculeCommand::execute(const HGraphicsCrystal& crystal)
{
    if (static_cast<int32_t>(crystal->number()) == crystal_)
        crystal->delete_molecule(molecule_);
}
