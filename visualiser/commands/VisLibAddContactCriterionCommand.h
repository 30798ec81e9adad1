#pragma once

#include "ContactCriterion.h"
#include "VisLibSnapshotCommand.h"

// Adds a contact definition to the active crystals, each its own copy ("Add Contact
// Definition").
class VisLibAddContactCriterionCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibAddContactCriterionCommand(QtCrystalManager* manager, const HContactCriterion& criterion)
        : VisLibSnapshotCommand(manager, "Add Contact Definition"), criterion_(criterion)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibAddContactCriterionCommand(*this));
    }

private:
    HContactCriterion criterion_;
};
