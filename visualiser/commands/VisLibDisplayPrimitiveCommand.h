#pragma once

#include "GraphicsObjectCommand.h"
#include "VisLibCrystalManagerCommand.h"

// A display change of one primitive, found again by its crystal and its place in the list.
class VisLibDisplayPrimitiveCommand : public VisLibCrystalManagerCommand {
public:
    VisLibDisplayPrimitiveCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                  const HGraphicsPrimitive& primitive, const HGraphicsObjectCommand& command);

    bool execute() override;
    bool unexecute() override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDisplayPrimitiveCommand(*this)); }

private:
    int32_t crystal_;
    int index_;
    HGraphicsObjectCommand prototype_;
    HGraphicsPrimitive before_;
};
