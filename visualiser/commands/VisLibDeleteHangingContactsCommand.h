#pragma once

#include "VisLibSnapshotCommand.h"

// Deletes the contacts of the active crystals whose far molecule has not been brought in ("Delete
// Hanging Contacts").
class VisLibDeleteHangingContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    explicit VisLibDeleteHangingContactsCommand(QtCrystalManager* manager)
        : VisLibSnapshotCommand(manager, "Delete Hanging Contacts")
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibDeleteHangingContactsCommand(*this));
    }
};
