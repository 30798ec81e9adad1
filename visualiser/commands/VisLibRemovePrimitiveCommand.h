#pragma once

#include "VisLibPrimitivesCommand.h"

// Takes a primitive out of the crystal that holds it ("Remove Object").
class VisLibRemovePrimitiveCommand : public VisLibPrimitivesCommand {
public:
    VisLibRemovePrimitiveCommand(QtCrystalManager* manager, const HGraphicsPrimitive& primitive);

    // False, with a line in the log, when no crystal holds the primitive.
    bool execute() override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibRemovePrimitiveCommand(*this)); }

private:
    int32_t crystal_ = -1;
    int index_ = -1;
};
