#include "ClearMonitorsCommand.h"

#include "GraphicsMonitor.h"
#include "Renderer.h"

void ClearMonitorsCommand::execute(Renderer& renderer)
{
    save(renderer);
    renderer.clearMonitors();
}

void ClearMonitorsCommand::unexecute(Renderer& renderer)
{
    renderer.setMonitors(before_);
}

void ClearMonitorsCommand::save(const Renderer& renderer)
{
    before_ = renderer.monitors();
}
