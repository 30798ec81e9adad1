#include "RotationCentreCommand.h"

#include "Renderer.h"

void RotationCentreCommand::execute(Renderer& renderer)
{
    save(renderer);
    renderer.setRotationCentre(centre_);
}

void RotationCentreCommand::unexecute(Renderer& renderer)
{
    renderer.setRotationCentre(before_);
}

void RotationCentreCommand::save(const Renderer& renderer)
{
    before_ = renderer.rotationCentre();
}
