#include "VisLibSelectionCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"
#include "Logger.h"
#include "QtCrystalManager.h"

bool VisLibSelectionCommand::execute()
{
    selected_.clear();
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        std::vector<bool>& flags = selected_[static_cast<int32_t>(crystal->number())];
        for (const HGraphicsAtom& atom : crystal->atoms())
            flags.push_back(atom->selected());
    }
    return VisLibCrystalManagerCommand::execute();
}

bool VisLibSelectionCommand::unexecute()
{
    restoreSelection();
    return true;
}

void VisLibSelectionCommand::restoreSelection()
{
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        const auto it = selected_.find(static_cast<int32_t>(crystal->number()));
        if (it == selected_.end())
            continue;
        const std::vector<HGraphicsAtom>& atoms = crystal->atoms();
        if (atoms.size() != it->second.size()) {
            logError("VisLibSelectionCommand::restoreSelection: Undo/Redo internal error - Mismatch in atom "
                     "count");
            continue;
        }
        for (std::size_t i = 0; i < atoms.size(); ++i)
            atoms[i]->set_selected(it->second[i]);
        crystal->changed();
    }
}
