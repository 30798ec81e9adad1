#pragma once

#include "VisLibSnapshotCommand.h"

// Brings in every molecule the contacts of the active crystals lead to, and those their contacts lead
// to in turn, stopping where a polymer would go on for ever ("Expand All Contacts").
class VisLibExpandAllContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    explicit VisLibExpandAllContactsCommand(QtCrystalManager* manager)
        : VisLibSnapshotCommand(manager, "Expand All Contacts")
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibExpandAllContactsCommand(*this));
    }
};
