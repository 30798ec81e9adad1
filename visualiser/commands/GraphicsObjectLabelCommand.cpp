#include "GraphicsObjectLabelCommand.h"

#include "GraphicsObject.h"

void GraphicsObjectLabelCommand::execute(GraphicsObject& object)
{
    old_[object.number()] = object.label();
    object.set_label(label_);
}

void GraphicsObjectLabelCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_label(it->second);
}
