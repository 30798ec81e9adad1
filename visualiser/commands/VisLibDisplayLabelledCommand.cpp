#include "VisLibDisplayLabelledCommand.h"

#include "GraphicsObjectLabelledCommand.h"

VisLibDisplayLabelledCommand::VisLibDisplayLabelledCommand(QtCrystalManager* manager,
                                                           GraphicsCrystal::VisibilityAction action,
                                                           GraphicsCrystal::Filter filter)
    : VisLibDisplayCommand(manager, QString::fromStdString(GraphicsCrystal::label_action_name(action)),
                           filter, HGraphicsObjectCommand(new GraphicsObjectLabelledCommand(action)))
{
}
