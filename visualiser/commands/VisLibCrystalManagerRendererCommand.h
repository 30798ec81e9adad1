#pragma once

#include "RendererCommand.h"
#include "VisLibCrystalManagerCommand.h"

// A change of the camera or the measurements, passed on by the manager to the view that owns the
// renderer; named after its renderer command.
class VisLibCrystalManagerRendererCommand : public VisLibCrystalManagerCommand {
public:
    VisLibCrystalManagerRendererCommand(QtCrystalManager* manager, const HRendererCommand& command)
        : VisLibCrystalManagerCommand(manager, command->name()), command_(command)
    {
    }

    bool execute() override;
    bool unexecute() override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibCrystalManagerRendererCommand(*this));
    }

private:
    HRendererCommand command_;
};
