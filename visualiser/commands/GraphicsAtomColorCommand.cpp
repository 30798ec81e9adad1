#include "GraphicsAtomColorCommand.h"

#include "GraphicsBond.h"

void GraphicsAtomColorCommand::execute(GraphicsObject& object)
{
    GraphicsObjectColorCommand::execute(object);
    auto* atom = dynamic_cast<GraphicsAtom*>(&object);
    if (!atom)
        return;
    for (GraphicsBond* bond : atom->bonds()) {
        const int half = bond->atom1().get() == atom ? 0 : 1;
        old_halves_[{bond->number(), half}] = half == 0 ? bond->color() : bond->color2();
        if (half == 0)
            bond->set_color(color());
        else
            bond->set_color2(color());
    }
}

void GraphicsAtomColorCommand::unexecute(GraphicsObject& object)
{
    GraphicsObjectColorCommand::unexecute(object);
    auto* atom = dynamic_cast<GraphicsAtom*>(&object);
    if (!atom)
        return;
    for (GraphicsBond* bond : atom->bonds()) {
        const int half = bond->atom1().get() == atom ? 0 : 1;
        const auto it = old_halves_.find({bond->number(), half});
        if (it == old_halves_.end())
            continue;
        if (half == 0)
            bond->set_color(it->second);
        else
            bond->set_color2(it->second);
    }
}
