#pragma once

#include "ViewCommand.h"

// Moves the eye along its line of sight, nearer for a factor below 1 ("Zoom View").
class ZoomCommand : public ViewCommand {
public:
    explicit ZoomCommand(double factor) : ViewCommand("Zoom View"), factor_(factor) {}

protected:
    void change(Renderer& renderer) const override;

private:
    double factor_;
};
