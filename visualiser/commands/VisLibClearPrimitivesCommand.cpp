#include "VisLibClearPrimitivesCommand.h"

#include "GraphicsCrystal.h"

void VisLibClearPrimitivesCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_primitives({});
}
