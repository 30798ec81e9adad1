#include "ViewStateCommand.h"

#include "Renderer.h"

void ViewStateCommand::execute(Renderer& renderer)
{
    save(renderer);
    renderer.setViewState(after_);
}

void ViewStateCommand::unexecute(Renderer& renderer)
{
    renderer.setViewState(before_);
}

void ViewStateCommand::save(const Renderer& renderer)
{
    before_ = renderer.viewState();
}
