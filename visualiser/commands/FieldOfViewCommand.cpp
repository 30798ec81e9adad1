#include "FieldOfViewCommand.h"

#include "Renderer.h"

void FieldOfViewCommand::change(Renderer& renderer) const
{
    renderer.setFieldOfView(degrees_);
}
