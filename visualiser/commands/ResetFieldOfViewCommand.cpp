#include "ResetFieldOfViewCommand.h"

#include "Renderer.h"

void ResetFieldOfViewCommand::change(Renderer& renderer) const
{
    const RendererViewState fresh;
    RendererViewState state = renderer.viewState();
    state.eye = fresh.eye;
    state.field_of_view = fresh.field_of_view;
    renderer.setViewState(state);
}
