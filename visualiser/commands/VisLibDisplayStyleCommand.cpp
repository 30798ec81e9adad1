#include "VisLibDisplayStyleCommand.h"

#include "GraphicsAtomStyleCommand.h"

VisLibDisplayStyleCommand::VisLibDisplayStyleCommand(QtCrystalManager* manager,
                                                     GraphicsObject::RenderingStyle style,
                                                     GraphicsCrystal::Filter filter)
    : VisLibDisplayCommand(manager, QString::fromStdString(GraphicsObject::style_name(style)), filter,
                           HGraphicsObjectCommand(new GraphicsAtomStyleCommand(style)))
{
}
