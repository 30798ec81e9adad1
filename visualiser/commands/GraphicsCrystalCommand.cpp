#include "GraphicsCrystalCommand.h"

#include "GraphicsCrystal.h"
#include "Logger.h"

void GraphicsCrystalCommand::execute(GraphicsObject& object)
{
    if (auto* crystal = dynamic_cast<GraphicsCrystal*>(&object))
        execute(*crystal);
    else
        logDebug(1, "GraphicsCrystalCommand::execute Ignoring non-GraphicsCrystal argument");
}

void GraphicsCrystalCommand::unexecute(GraphicsObject& object)
{
    if (auto* crystal = dynamic_cast<GraphicsCrystal*>(&object))
        unexecute(*crystal);
    else
        logDebug(1, "GraphicsCrystalCommand::unexecute Ignoring non-GraphicsCrystal argument");
}
