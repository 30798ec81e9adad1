#include "GraphicsObjectColorCommand.h"

#include "GraphicsObject.h"

void GraphicsObjectColorCommand::execute(GraphicsObject& object)
{
    old_[object.number()] = object.color();
    object.set_color(color_);
}

void GraphicsObjectColorCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_color(it->second);
}
