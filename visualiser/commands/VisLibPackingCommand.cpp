#include "VisLibPackingCommand.h"

#include "GraphicsCrystal.h"
#include "Logger.h"

bool VisLibPackingCommand::execute()
{
    logDebug(2, "VisLibPackingCommand::execute() entered: packed_ = %d", packed_);
    const bool done = VisLibSnapshotCommand::execute();
    logDebug(2, "VisLibPackingCommand::execute() exited: packed_ = %d", packed_);
    return done;
}

bool VisLibPackingCommand::unexecute()
{
    logDebug(2, "VisLibPackingCommand::unexecute() entered: packed_ = %d", packed_);
    const bool done = VisLibSnapshotCommand::unexecute();
    logDebug(2, "VisLibPackingCommand::unexecute() exited: packed_ = %d", packed_);
    return done;
}

void VisLibPackingCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_packing(packed_);
}
