#include "ViewAlongCommand.h"

Transformation ViewAlongCommand::changed(const Transformation& before) const
{
    Transformation after = before;
    after.set_rot(rotation_);
    return after;
}
