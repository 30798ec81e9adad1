#pragma once

#include "VisLibSnapshotCommand.h"

// Takes the molecule of a picked atom out of the picture ("Delete Molecule").
class VisLibDeleteMoleculeCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibDeleteMoleculeCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                const HGraphicsAtom& atom);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDeleteMoleculeCommand(*this)); }

private:
    int32_t crystal_;
    int molecule_;
};
