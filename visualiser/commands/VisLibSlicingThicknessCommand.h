#pragma once

#include "VisLibSnapshotCommand.h"

// Makes the slab of the active crystals thicker or thinner ("Slicing Thickness 2.5").
class VisLibSlicingThicknessCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;
    using VisLibSnapshotCommand::unexecute;

    VisLibSlicingThicknessCommand(QtCrystalManager* manager, double thickness)
        : VisLibSnapshotCommand(manager, QString("Slicing Thickness %1").arg(thickness)),
          thickness_(thickness)
    {
    }

    bool execute() override;
    bool unexecute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibSlicingThicknessCommand(*this)); }

private:
    double thickness_;
};
