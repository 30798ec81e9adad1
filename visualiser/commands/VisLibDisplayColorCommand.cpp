#include "VisLibDisplayColorCommand.h"

#include "GraphicsCrystalColorCommand.h"

VisLibDisplayColorCommand::VisLibDisplayColorCommand(QtCrystalManager* manager,
                                                     GraphicsObject::ColorMode mode, const RGBA& color,
                                                     GraphicsCrystal::Filter filter)
    : VisLibDisplayCommand(manager, "Change color", filter,
                           HGraphicsObjectCommand(new GraphicsCrystalColorCommand(mode, color, filter)))
{
}
