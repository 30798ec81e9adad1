#pragma once

#include "Plane.h"
#include "VisLibSnapshotCommand.h"

// Slices the active crystals along another plane ("Slicing Plane").
class VisLibSlicingPlaneCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibSlicingPlaneCommand(QtCrystalManager* manager, const Plane& plane)
        : VisLibSnapshotCommand(manager, "Slicing Plane"), plane_(plane)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibSlicingPlaneCommand(*this)); }

private:
    Plane plane_;
};
