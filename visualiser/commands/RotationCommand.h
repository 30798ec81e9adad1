#pragma once

#include "TransformationCommand.h"
#include "Vector3D.h"

// Turns the scene about an axis of the screen through the rotation centre ("Rotation about
// axis").
class RotationCommand : public TransformationCommand {
public:
    RotationCommand(const Vector3D& axis, double degrees)
        : TransformationCommand("Rotation about axis"), axis_(axis), degrees_(degrees)
    {
    }

protected:
    Transformation changed(const Transformation& before) const override;

private:
    Vector3D axis_;
    double degrees_;
};
