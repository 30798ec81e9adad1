#include "VisLibSlicingDisplacementCommand.h"

#include "GraphicsCrystal.h"
#include "Logger.h"

bool VisLibSlicingDisplacementCommand::execute()
{
    logDebug(2, "VisLibSlicingDisplacementCommand::execute() entered: displacement_ = %f", displacement_);
    const bool done = VisLibSnapshotCommand::execute();
    logDebug(2, "VisLibSlicingDisplacementCommand::execute() exited: displacement_ = %f", displacement_);
    return done;
}

bool VisLibSlicingDisplacementCommand::unexecute()
{
    logDebug(2, "VisLibSlicingDisplacementCommand::unexecute() entered: displacement_ = %f", displacement_);
    const bool done = VisLibSnapshotCommand::unexecute();
    logDebug(2, "VisLibSlicingDisplacementCommand::unexecute() exited: displacement_ = %f", displacement_);
    return done;
}

void VisLibSlicingDisplacementCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_slicing_displacement(displacement_);
}
