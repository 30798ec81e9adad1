#pragma once

#include "RendererCommand.h"
#include "Vector3D.h"

// Moves the centre the scene turns about, without moving the picture ("Transformation").
class RotationCentreCommand : public RendererCommand {
public:
    explicit RotationCentreCommand(const Point& centre, const QString& name = "Transformation")
        : RendererCommand(name), centre_(centre)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

private:
    Point centre_;
    Point before_;
};
