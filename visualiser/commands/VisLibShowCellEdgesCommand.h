#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>

// Shows or hides the cell edges of the active crystals ("Show Cell Axes", "Hide Cell Axes").
class VisLibShowCellEdgesCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;

    VisLibShowCellEdgesCommand(QtCrystalManager* manager, bool show)
        : VisLibCrystalManagerCommand(manager, QString(show ? "Show" : "Hide") + " Cell Axes"), show_(show)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    void unexecute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibShowCellEdgesCommand(*this)); }

private:
    bool show_;
    std::map<int32_t, bool> before_;
};
