#pragma once

#include "VisLibSnapshotCommand.h"

// Turns packing on or off in the active crystals ("Packing").
class VisLibPackingCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;
    using VisLibSnapshotCommand::unexecute;

    VisLibPackingCommand(QtCrystalManager* manager, bool packed)
        : VisLibSnapshotCommand(manager, "Packing"), packed_(packed)
    {
    }

    bool execute() override;
    bool unexecute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibPackingCommand(*this)); }

private:
    bool packed_;
};
