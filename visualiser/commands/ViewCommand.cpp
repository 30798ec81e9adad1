#include "ViewCommand.h"

#include "Renderer.h"

void ViewCommand::execute(Renderer& renderer)
{
    save(renderer);
    change(renderer);
}

void ViewCommand::unexecute(Renderer& renderer)
{
    RendererViewState state = renderer.viewState();
    state.eye = eye_before_;
    state.field_of_view = field_of_view_before_;
    renderer.setViewState(state);
}

void ViewCommand::save(const Renderer& renderer)
{
    eye_before_ = renderer.eyePosition();
    field_of_view_before_ = renderer.fieldOfView();
}

void ViewCommand::change(Renderer& renderer) const
{
    RendererViewState state = renderer.viewState();
    state.eye = eye_;
    state.field_of_view = field_of_view_;
    renderer.setViewState(state);
}
