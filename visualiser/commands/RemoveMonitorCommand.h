#pragma once

#include "GraphicsMonitor.h"
#include "RendererCommand.h"

#include <vector>

// Takes a measurement out of the view; its undo puts it back in its place ("Remove
// Measurement").
class RemoveMonitorCommand : public RendererCommand {
public:
    explicit RemoveMonitorCommand(const HGraphicsMonitor& monitor)
        : RendererCommand("Remove Measurement"), monitor_(monitor)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    HGraphicsMonitor monitor_;
    std::vector<HGraphicsMonitor> before_;
};
