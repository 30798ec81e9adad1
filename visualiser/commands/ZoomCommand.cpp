#include "ZoomCommand.h"

#include "Renderer.h"

void ZoomCommand::change(Renderer& renderer) const
{
    renderer.setEyePosition(renderer.eyePosition() * factor_);
}
