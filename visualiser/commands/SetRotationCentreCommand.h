#pragma once

#include "RotationCentreCommand.h"

// Turns the scene about a picked object from now on ("Set Rotation Centre").
class SetRotationCentreCommand : public RotationCentreCommand {
public:
    explicit SetRotationCentreCommand(const Point& centre)
        : RotationCentreCommand(centre, "Set Rotation Centre")
    {
    }
};
