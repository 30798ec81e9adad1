#pragma once

#include "VisLibCrystalEditingCommand.h"

// Removes an atom, and every symmetry copy of it, from the structure ("Remove Atom").
class VisLibRemoveAtomCommand : public VisLibCrystalEditingCommand {
public:
    VisLibRemoveAtomCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                            const HGraphicsAtom& atom)
        : VisLibCrystalEditingCommand(manager, "Remove Atom", crystal),
          atom_(graphicsAtomIdentifier(crystal, atom))
    {
    }

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibRemoveAtomCommand(*this)); }

protected:
    void edit(const HGraphicsCrystal& crystal) override;

private:
    int atom_;
};
