#pragma once

#include "RendererCommand.h"
#include "RendererViewState.h"

// Returns the view to where it started, turning about a given centre ("Orientation Reset").
class ResetViewStateCommand : public RendererCommand {
public:
    explicit ResetViewStateCommand(const Point& centre)
        : RendererCommand("Orientation Reset"), centre_(centre)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    Point centre_;
    RendererViewState before_;
};
