#include "GraphicsObjectVisibilityCommand.h"

void GraphicsObjectVisibilityCommand::execute(GraphicsObject& object)
{
    old_[object.number()] = object.visible();
    object.set_visible(GraphicsCrystal::apply(action_, object.visible()));
}

void GraphicsObjectVisibilityCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_visible(it->second);
}
