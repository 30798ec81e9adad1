#include "VisLibActiveCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsObjectActiveCommand.h"
#include "QtCrystalManager.h"

VisLibActiveCommand::VisLibActiveCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                         bool active)
    : VisLibCrystalManagerCommand(manager, "Change Active State"),
      crystal_(graphicsCrystalIdentifier(crystal)), command_(new GraphicsObjectActiveCommand(active))
{
}

bool VisLibActiveCommand::execute()
{
    return apply(false);
}

bool VisLibActiveCommand::unexecute()
{
    return apply(true);
}

bool VisLibActiveCommand::apply(bool undo)
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    if (!crystal)
        return false;
    if (undo)
        crystal->unexecute(*command_);
    else
        crystal->execute(*command_);
    emit manager()->activeStatusChanged(crystal);
    return true;
}
