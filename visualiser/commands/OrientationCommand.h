#pragma once

#include "GraphicsHandles.h"
#include "TransformationCommand.h"

// Sets the orientation of one crystal within the scene ("Set Crystal Orientation Matrix").
class OrientationCommand : public TransformationCommand {
public:
    OrientationCommand(const HGraphicsCrystal& crystal, const Transformation& orientation);

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    HGraphicsCrystal crystal_;
    Transformation orientation_;
    Transformation before_;
};
