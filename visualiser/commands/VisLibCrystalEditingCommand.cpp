#include "VisLibCrystalEditingCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsCrystalMemento.h"

bool VisLibCrystalEditingCommand::execute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    if (!crystal)
        return false;
    snapshot_ = THandle<GraphicsCrystalMemento>(new GraphicsCrystalMemento(*crystal));
    edit(crystal);
    return true;
}

bool VisLibCrystalEditingCommand::unexecute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    if (!crystal || !snapshot_)
        return false;
    *crystal = *snapshot_;
    return true;
}
