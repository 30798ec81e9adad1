#include "RemoveMonitorCommand.h"

#include "GraphicsMonitor.h"
#include "Renderer.h"

void RemoveMonitorCommand::execute(Renderer& renderer)
{
    save(renderer);
    renderer.removeMonitor(monitor_);
}

void RemoveMonitorCommand::unexecute(Renderer& renderer)
{
    renderer.setMonitors(before_);
}

void RemoveMonitorCommand::save(const Renderer& renderer)
{
    before_ = renderer.monitors();
}
