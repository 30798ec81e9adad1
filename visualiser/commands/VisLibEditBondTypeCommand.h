#pragma once

#include "BondType.h"
#include "VisLibCrystalEditingCommand.h"

// Gives a bond, and every symmetry copy of it, another type ("Edit Bond Type").
class VisLibEditBondTypeCommand : public VisLibCrystalEditingCommand {
public:
    VisLibEditBondTypeCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                              const HGraphicsBond& bond, BondType type)
        : VisLibCrystalEditingCommand(manager, "Edit Bond Type", crystal),
          bond_(graphicsBondIdentifier(crystal, bond)), type_(type)
    {
    }

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibEditBondTypeCommand(*this)); }

protected:
    void edit(const HGraphicsCrystal& crystal) override;

private:
    int bond_;
    BondType type_;
};
