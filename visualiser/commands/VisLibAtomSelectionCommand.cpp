#include "VisLibAtomSelectionCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"

namespace {

QString name_of(std::size_t atoms, bool select)
{
    if (atoms != 1)
        return "Changed selection";
    return select ? "Select Atom" : "Deselect Atom";
}

} // namespace

VisLibAtomSelectionCommand::VisLibAtomSelectionCommand(QtCrystalManager* manager,
                                                       const HGraphicsCrystal& crystal,
                                                       const std::vector<HGraphicsAtom>& atoms, bool select)
    : VisLibSelectionCommand(manager, name_of(atoms.size(), select)),
      crystal_(graphicsCrystalIdentifier(crystal)), select_(select)
{
    for (const HGraphicsAtom& atom : atoms)
        atoms_.push_back(graphicsAtomIdentifier(crystal, atom));
}

void VisLibAtomSelectionCommand::execute(const HGraphicsCrystal& crystal)
{
    if (static_cast<int32_t>(crystal->number()) != crystal_)
        return;
    for (int index : atoms_)
        if (const HGraphicsAtom atom = graphicsAtom(crystal, index))
            atom->set_selected(select_);
    crystal->changed();
}
