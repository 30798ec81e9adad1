#include "RotationCommand.h"

Transformation RotationCommand::changed(const Transformation& before) const
{
    // The rotation centre stands at the orientation's translation on the screen: turn about it.
    const Vector3D centre = before.trans();
    Transformation to_origin, back;
    to_origin.set_trans(-centre);
    back.set_trans(centre);
    return back * Transformation(axis_, degrees_, true) * to_origin * before;
}
