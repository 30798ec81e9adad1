#pragma once

#include "VisLibDisplayCommand.h"

// Draws the atoms a filter gives, with their bonds, in one style; named after the style.
class VisLibDisplayStyleCommand : public VisLibDisplayCommand {
public:
    VisLibDisplayStyleCommand(QtCrystalManager* manager, GraphicsObject::RenderingStyle style,
                              GraphicsCrystal::Filter filter);
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDisplayStyleCommand(*this)); }
};
