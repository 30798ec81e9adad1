#pragma once

#include "VisLibPrimitivesCommand.h"

// Takes every primitive out of the active crystals ("Clear Objects").
class VisLibClearPrimitivesCommand : public VisLibPrimitivesCommand {
public:
    using VisLibPrimitivesCommand::execute;

    explicit VisLibClearPrimitivesCommand(QtCrystalManager* manager)
        : VisLibPrimitivesCommand(manager, "Clear Objects")
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibClearPrimitivesCommand(*this)); }
};
