#pragma once

#include "VisLibSnapshotCommand.h"

// Moves the slab of the active crystals along its normal ("Slicing Displacement 1.5").
class VisLibSlicingDisplacementCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;
    using VisLibSnapshotCommand::unexecute;

    VisLibSlicingDisplacementCommand(QtCrystalManager* manager, double displacement)
        : VisLibSnapshotCommand(manager, QString("Slicing Displacement %1").arg(displacement)),
          displacement_(displacement)
    {
    }

    bool execute() override;
    bool unexecute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibSlicingDisplacementCommand(*this));
    }

private:
    double displacement_;
};
