#pragma once

#include "VisLibCrystalEditingCommand.h"

// Removes a bond, and every symmetry copy of it, from the structure ("Remove Bond").
class VisLibRemoveBondCommand : public VisLibCrystalEditingCommand {
public:
    VisLibRemoveBondCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                            const HGraphicsBond& bond)
        : VisLibCrystalEditingCommand(manager, "Remove Bond", crystal),
          bond_(graphicsBondIdentifier(crystal, bond))
    {
    }

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibRemoveBondCommand(*this)); }

protected:
    void edit(const HGraphicsCrystal& crystal) override;

private:
    int bond_;
};
