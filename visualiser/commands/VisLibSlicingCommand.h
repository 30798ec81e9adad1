#pragma once

#include "VisLibSnapshotCommand.h"

// Turns slicing on or off in the active crystals ("Slicing").
class VisLibSlicingCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;
    using VisLibSnapshotCommand::unexecute;

    VisLibSlicingCommand(QtCrystalManager* manager, bool sliced)
        : VisLibSnapshotCommand(manager, "Slicing"), sliced_(sliced)
    {
    }

    bool execute() override;
    bool unexecute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibSlicingCommand(*this)); }

private:
    bool sliced_;
};
