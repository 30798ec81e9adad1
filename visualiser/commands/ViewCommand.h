#pragma once

#include "RendererCommand.h"
#include "Vector3D.h"

// Puts the eye somewhere else, with a field of view ("Change View"); the base of zooming and of
// the field of view commands.
class ViewCommand : public RendererCommand {
public:
    ViewCommand(const Point& eye, double field_of_view, const QString& name = "Change View")
        : RendererCommand(name), eye_(eye), field_of_view_(field_of_view)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

protected:
    explicit ViewCommand(const QString& name) : RendererCommand(name) {}
    virtual void change(Renderer& renderer) const;

private:
    Point eye_;
    double field_of_view_ = 0.0;
    Point eye_before_;
    double field_of_view_before_ = 0.0;
};
