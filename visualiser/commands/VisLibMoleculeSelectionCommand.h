#pragma once

#include "VisLibSelectionCommand.h"

// Selects or deselects the whole molecule of a picked atom ("Select Molecule", "Deselect
// Molecule").
class VisLibMoleculeSelectionCommand : public VisLibSelectionCommand {
public:
    using VisLibSelectionCommand::execute;

    VisLibMoleculeSelectionCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                   const HGraphicsAtom& atom, bool select);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibMoleculeSelectionCommand(*this));
    }

private:
    int32_t crystal_;
    int molecule_;
    bool select_;
};
