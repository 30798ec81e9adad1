#pragma once

#include "VisLibPrimitivesCommand.h"

// Adds a centroid, plane or line to one crystal ("Add Object").
class VisLibAddPrimitiveCommand : public VisLibPrimitivesCommand {
public:
    using VisLibPrimitivesCommand::execute;

    VisLibAddPrimitiveCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                              const HGraphicsPrimitive& primitive);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibAddPrimitiveCommand(*this)); }

private:
    int32_t crystal_;
    HGraphicsPrimitive primitive_;
};
