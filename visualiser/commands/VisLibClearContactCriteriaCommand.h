#pragma once

#include "VisLibSnapshotCommand.h"

// Takes every contact definition, and every contact, out of the active crystals ("Clear
// Contact Definitions").
class VisLibClearContactCriteriaCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    explicit VisLibClearContactCriteriaCommand(QtCrystalManager* manager)
        : VisLibSnapshotCommand(manager, "Clear Contact Definitions")
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibClearContactCriteriaCommand(*this));
    }
};
