#pragma once

#include "GraphicsMonitor.h"
#include "RendererCommand.h"

// Adds a measurement to the view ("Add Measurement").
class AddMonitorCommand : public RendererCommand {
public:
    explicit AddMonitorCommand(const HGraphicsMonitor& monitor)
        : RendererCommand("Add Measurement"), monitor_(monitor)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer&) override {}

private:
    HGraphicsMonitor monitor_;
};
