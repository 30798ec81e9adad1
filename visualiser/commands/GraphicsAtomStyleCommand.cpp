#include "GraphicsAtomStyleCommand.h"

#include "GraphicsBond.h"

void GraphicsAtomStyleCommand::execute(GraphicsObject& object)
{
    GraphicsObjectStyleCommand::execute(object);
    if (auto* atom = dynamic_cast<GraphicsAtom*>(&object))
        for (GraphicsBond* bond : atom->bonds())
            GraphicsObjectStyleCommand::execute(*bond);
}

void GraphicsAtomStyleCommand::unexecute(GraphicsObject& object)
{
    if (auto* atom = dynamic_cast<GraphicsAtom*>(&object))
        for (GraphicsBond* bond : atom->bonds())
            GraphicsObjectStyleCommand::unexecute(*bond);
    GraphicsObjectStyleCommand::unexecute(object);
}
