#include "GraphicsObjectStyleCommand.h"

void GraphicsObjectStyleCommand::execute(GraphicsObject& object)
{
    // A bond between two changed atoms is reached twice; its first style is the one to keep.
    old_.emplace(object.number(), object.style());
    object.set_style(style_);
}

void GraphicsObjectStyleCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_style(it->second);
}
