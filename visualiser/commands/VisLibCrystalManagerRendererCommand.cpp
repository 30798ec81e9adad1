#include "VisLibCrystalManagerRendererCommand.h"

#include "QtCrystalManager.h"

bool VisLibCrystalManagerRendererCommand::execute()
{
    manager()->emitExecuteRendererCommand(command_);
    return true;
}

bool VisLibCrystalManagerRendererCommand::unexecute()
{
    manager()->emitUnexecuteRendererCommand(command_);
    return true;
}
