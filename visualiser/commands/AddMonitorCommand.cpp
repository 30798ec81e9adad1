#include "AddMonitorCommand.h"

#include "GraphicsMonitor.h"
#include "Renderer.h"

void AddMonitorCommand::execute(Renderer& renderer)
{
    renderer.addMonitor(monitor_);
}

void AddMonitorCommand::unexecute(Renderer& renderer)
{
    renderer.removeMonitor(monitor_);
}
