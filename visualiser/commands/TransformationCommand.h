#pragma once

#include "RendererCommand.h"
#include "Transformation.h"

// Sets the orientation of the whole scene ("Transformation"); the base of the commands that turn
// or move it, which each work out the new orientation from the one before.
class TransformationCommand : public RendererCommand {
public:
    explicit TransformationCommand(const Transformation& orientation, const QString& name = "Transformation")
        : RendererCommand(name), target_(orientation)
    {
    }

    void execute(Renderer& renderer) override;
    void unexecute(Renderer& renderer) override;
    void save(const Renderer& renderer) override;

protected:
    explicit TransformationCommand(const QString& name) : RendererCommand(name) {}
    virtual Transformation changed(const Transformation& before) const;

private:
    Transformation target_;
    Transformation before_;
};
