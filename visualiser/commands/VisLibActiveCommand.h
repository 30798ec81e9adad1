#pragma once

#include "GraphicsObjectCommand.h"
#include "VisLibCrystalManagerCommand.h"

// Makes one crystal active or not: commands reach only the active crystals ("Change Active
// State").
class VisLibActiveCommand : public VisLibCrystalManagerCommand {
public:
    VisLibActiveCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal, bool active);

    bool execute() override;
    bool unexecute() override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibActiveCommand(*this)); }

private:
    bool apply(bool undo);

    int32_t crystal_;
    HGraphicsObjectCommand command_;
};
