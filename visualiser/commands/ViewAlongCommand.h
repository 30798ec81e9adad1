#pragma once

#include "Matrix.h"
#include "TransformationCommand.h"

// Turns the scene so that a crystal direction points into the screen, keeping where the
// rotation centre stands ("View Along Crystal Axis").
class ViewAlongCommand : public TransformationCommand {
public:
    explicit ViewAlongCommand(const Matrix& rotation)
        : TransformationCommand("View Along Crystal Axis"), rotation_(rotation)
    {
    }

protected:
    Transformation changed(const Transformation& before) const override;

private:
    Matrix rotation_;
};
