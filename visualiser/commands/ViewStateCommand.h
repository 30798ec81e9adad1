#pragma once

#include "RendererCommand.h"
#include "RendererViewState.h"

// The whole view before and after one drag of the mouse, so that the drag undoes as one step.
// Its name tells the kind of drag: "Rotation", "Translation", "Change Perspective", "Change Zoom"
// or "Change View".
class ViewStateCommand : public RendererCommand {
public:
    ViewStateCommand(const QString& name, const RendererViewState& before, const RendererViewState& after)
        : RendererCommand(name), before_(before), after_(after)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    RendererViewState before_;
    RendererViewState after_;
};
