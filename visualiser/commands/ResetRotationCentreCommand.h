#pragma once

#include "RotationCentreCommand.h"

// Turns the scene about its crystal's own centre again ("Reset Rotation Centre").
class ResetRotationCentreCommand : public RotationCentreCommand {
public:
    explicit ResetRotationCentreCommand(const Point& centre)
        : RotationCentreCommand(centre, "Reset Rotation Centre")
    {
    }
};
