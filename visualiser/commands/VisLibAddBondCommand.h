#pragma once

#include "BondType.h"
#include "VisLibCrystalEditingCommand.h"

// Bonds two atoms, and every symmetry copy of the pair ("Add Bond").
class VisLibAddBondCommand : public VisLibCrystalEditingCommand {
public:
    VisLibAddBondCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                         const HGraphicsAtom& atom1, const HGraphicsAtom& atom2, BondType type)
        : VisLibCrystalEditingCommand(manager, "Add Bond", crystal),
          atom1_(graphicsAtomIdentifier(crystal, atom1)), atom2_(graphicsAtomIdentifier(crystal, atom2)),
          type_(type)
    {
    }

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibAddBondCommand(*this)); }

protected:
    void edit(const HGraphicsCrystal& crystal) override;

private:
    int atom1_;
    int atom2_;
    BondType type_;
};
