#include "VisLibSlicingThicknessCommand.h"

#include "GraphicsCrystal.h"
#include "Logger.h"

bool VisLibSlicingThicknessCommand::execute()
{
    logDebug(2, "VisLibSlicingThicknessCommand ::execute() entered: thickness_ = %f", thickness_);
    const bool done = VisLibSnapshotCommand::execute();
    logDebug(2, "VisLibSlicingThicknessCommand ::execute() exited: thickness_ = %f", thickness_);
    return done;
}

bool VisLibSlicingThicknessCommand::unexecute()
{
    logDebug(2, "VisLibSlicingThicknessCommand ::unexecute() entered: thickness_ = %f", thickness_);
    const bool done = VisLibSnapshotCommand::unexecute();
    logDebug(2, "VisLibSlicingThicknessCommand ::unexecute() exited: thickness_ = %f", thickness_);
    return done;
}

void VisLibSlicingThicknessCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_slicing_thickness(thickness_);
}
