#pragma once

#include "GraphicsMonitor.h"
#include "RendererCommand.h"

#include <vector>

// Takes every measurement out of the view ("Clear Measurements").
class ClearMonitorsCommand : public RendererCommand {
public:
    ClearMonitorsCommand() : RendererCommand("Clear Measurements") {}

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    std::vector<HGraphicsMonitor> before_;
};
