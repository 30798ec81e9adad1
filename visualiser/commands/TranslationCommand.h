#pragma once

#include "TransformationCommand.h"
#include "Vector3D.h"

// Moves the scene in screen coordinates ("Translation").
class TranslationCommand : public TransformationCommand {
public:
    explicit TranslationCommand(const Vector3D& by) : TransformationCommand("Translation"), by_(by) {}

protected:
    Transformation changed(const Transformation& before) const override;

private:
    Vector3D by_;
};
