#include "VisLibSlicingCommand.h"

#include "GraphicsCrystal.h"
#include "Logger.h"

bool VisLibSlicingCommand::execute()
{
    logDebug(2, "VisLibSlicingCommand::execute() entered: sliced_ = %d", sliced_);
    const bool done = VisLibSnapshotCommand::execute();
    logDebug(2, "VisLibSlicingCommand::execute() exited: sliced_ = %d", sliced_);
    return done;
}

bool VisLibSlicingCommand::unexecute()
{
    logDebug(2, "VisLibSlicingCommand::unexecute() entered: sliced_ = %d", sliced_);
    const bool done = VisLibSnapshotCommand::unexecute();
    logDebug(2, "VisLibSlicingCommand::unexecute() exited: sliced_ = %d", sliced_);
    return done;
}

void VisLibSlicingCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_slicing(sliced_);
}
