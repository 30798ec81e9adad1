#pragma once

#include "ViewCommand.h"

// Returns to the narrowest field of view, an orthographic picture, with the eye where it
// started ("Reset Field Of View").
class ResetFieldOfViewCommand : public ViewCommand {
public:
    ResetFieldOfViewCommand() : ViewCommand("Reset Field Of View") {}

protected:
    void change(Renderer& renderer) const override;
};
