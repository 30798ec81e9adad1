#pragma once

#include "ContactCriterion.h"
#include "VisLibSnapshotCommand.h"

// Replaces a contact definition of the active crystals by an edited one ("Contact Definition
// Changed").
class VisLibUpdateContactCriterionCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibUpdateContactCriterionCommand(QtCrystalManager* manager, const HContactCriterion& old_criterion,
                                        const HContactCriterion& new_criterion)
        : VisLibSnapshotCommand(manager, "Contact Definition Changed"), old_(old_criterion),
          new_(new_criterion)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibUpdateContactCriterionCommand(*this));
    }

private:
    HContactCriterion old_;
    HContactCriterion new_;
};
