#include "GraphicsObjectLabelledCommand.h"

void GraphicsObjectLabelledCommand::execute(GraphicsObject& object)
{
    old_[object.number()] = object.labelled();
    object.set_labelled(GraphicsCrystal::apply(action_, object.labelled()));
}

void GraphicsObjectLabelledCommand::unexecute(GraphicsObject& object)
{
    const auto it = old_.find(object.number());
    if (it != old_.end())
        object.set_labelled(it->second);
}
