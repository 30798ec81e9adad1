#pragma once

#include "VisLibDisplayCommand.h"

// Colours the atoms a filter gives, and their bond halves, by a colour mode ("Change color").
class VisLibDisplayColorCommand : public VisLibDisplayCommand {
public:
    VisLibDisplayColorCommand(QtCrystalManager* manager, GraphicsObject::ColorMode mode, const RGBA& color,
                              GraphicsCrystal::Filter filter);
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDisplayColorCommand(*this)); }
};
