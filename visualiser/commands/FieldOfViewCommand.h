#pragma once

#include "ViewCommand.h"

// Sets the field of view; the eye moves so that the picture keeps its size at the rotation
// centre. The history shows it as "Reset Field Of View".
class FieldOfViewCommand : public ViewCommand {
public:
    explicit FieldOfViewCommand(double degrees) : ViewCommand("Reset Field Of View"), degrees_(degrees) {}

protected:
    void change(Renderer& renderer) const override;

private:
    double degrees_;
};
