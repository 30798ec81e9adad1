#include "OrientationCommand.h"

#include "GraphicsCrystal.h"
#include "Renderer.h"

OrientationCommand::OrientationCommand(const HGraphicsCrystal& crystal, const Transformation& orientation)
    : TransformationCommand("Set Crystal Orientation Matrix"), crystal_(crystal), orientation_(orientation)
{
}

void OrientationCommand::execute(Renderer& renderer)
{
    save(renderer);
    crystal_->set_orientation(orientation_);
}

void OrientationCommand::unexecute(Renderer&)
{
    crystal_->set_orientation(before_);
}

void OrientationCommand::save(const Renderer&)
{
    before_ = crystal_->orientation();
}
