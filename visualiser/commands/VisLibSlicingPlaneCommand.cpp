#include "VisLibSlicingPlaneCommand.h"

#include "GraphicsCrystal.h"

void VisLibSlicingPlaneCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_slicing_plane(plane_);
}
