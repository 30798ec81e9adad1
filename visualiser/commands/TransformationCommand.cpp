#include "TransformationCommand.h"

#include "Renderer.h"

void TransformationCommand::execute(Renderer& renderer)
{
    save(renderer);
    renderer.setOrientation(changed(before_));
}

void TransformationCommand::unexecute(Renderer& renderer)
{
    renderer.setOrientation(before_);
}

void TransformationCommand::save(const Renderer& renderer)
{
    before_ = renderer.orientation();
}

Transformation TransformationCommand::changed(const Transformation&) const
{
    return target_;
}
