#include "GraphicsBondColorCommand.h"

#include "GraphicsBond.h"

void GraphicsBondColorCommand::execute(GraphicsObject& object)
{
    GraphicsObjectColorCommand::execute(object);
    if (auto* bond = dynamic_cast<GraphicsBond*>(&object)) {
        old_second_[bond->number()] = bond->color2();
        bond->set_color2(color());
    }
}

void GraphicsBondColorCommand::unexecute(GraphicsObject& object)
{
    GraphicsObjectColorCommand::unexecute(object);
    auto* bond = dynamic_cast<GraphicsBond*>(&object);
    if (!bond)
        return;
    const auto it = old_second_.find(bond->number());
    if (it != old_second_.end())
        bond->set_color2(it->second);
}
