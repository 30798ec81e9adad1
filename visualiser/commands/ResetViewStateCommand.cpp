#include "ResetViewStateCommand.h"

#include "Renderer.h"

void ResetViewStateCommand::execute(Renderer& renderer)
{
    save(renderer);
    RendererViewState fresh;
    fresh.rotation_centre = centre_;
    renderer.setViewState(fresh);
}

void ResetViewStateCommand::unexecute(Renderer& renderer)
{
    renderer.setViewState(before_);
}

void ResetViewStateCommand::save(const Renderer& renderer)
{
    before_ = renderer.viewState();
}
