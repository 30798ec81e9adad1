#include "GraphicsObjectActiveCommand.h"

#include "GraphicsObject.h"

void GraphicsObjectActiveCommand::execute(GraphicsObject& object)
{
    old_[object.number()] = object.active();
    object.set_active(active_);
}

void GraphicsObjectActiveCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_active(it->second);
}
