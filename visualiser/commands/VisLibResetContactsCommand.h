#pragma once

#include "VisLibSnapshotCommand.h"

// Forgets the contacts of the active crystals and the molecules they brought in ("Reset Contacts").
class VisLibResetContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    explicit VisLibResetContactsCommand(QtCrystalManager* manager)
        : VisLibSnapshotCommand(manager, "Reset Contacts")
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibResetContactsCommand(*this)); }
};
