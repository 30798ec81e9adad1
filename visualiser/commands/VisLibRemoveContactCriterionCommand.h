#pragma once

#include "ContactCriterion.h"
#include "VisLibSnapshotCommand.h"

// Takes a contact definition, and the contacts it found, out of the active crystals ("Remove
// Contact Definition").
class VisLibRemoveContactCriterionCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibRemoveContactCriterionCommand(QtCrystalManager* manager, const HContactCriterion& criterion)
        : VisLibSnapshotCommand(manager, "Remove Contact Definition"), criterion_(criterion)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibRemoveContactCriterionCommand(*this));
    }

private:
    HContactCriterion criterion_;
};
