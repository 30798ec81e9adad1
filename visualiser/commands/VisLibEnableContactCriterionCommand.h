#pragma once

#include "ContactCriterion.h"
#include "VisLibSnapshotCommand.h"

// Switches a contact definition of the active crystals on or off without forgetting it
// ("Enable Contact Definition", "Disable Contact Definition").
class VisLibEnableContactCriterionCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibEnableContactCriterionCommand(QtCrystalManager* manager, const HContactCriterion& criterion,
                                        bool enabled)
        : VisLibSnapshotCommand(manager, QString(enabled ? "Enable" : "Disable") + " Contact Definition"),
          criterion_(criterion), enabled_(enabled)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibEnableContactCriterionCommand(*this));
    }

private:
    HContactCriterion criterion_;
    bool enabled_;
};
