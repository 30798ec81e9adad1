#include "VisLibDisplayVisibilityCommand.h"

#include "GraphicsObjectVisibilityCommand.h"

VisLibDisplayVisibilityCommand::VisLibDisplayVisibilityCommand(QtCrystalManager* manager,
                                                               GraphicsCrystal::VisibilityAction action,
                                                               GraphicsCrystal::Filter filter)
    : VisLibDisplayCommand(manager, QString::fromStdString(GraphicsCrystal::action_name(action)), filter,
                           HGraphicsObjectCommand(new GraphicsObjectVisibilityCommand(action)))
{
}
