#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>

// Shows or hides the two planes that bound the slab ("Show Slicing Bounds", "Hide Slicing
// Bounds").
class VisLibShowSlicingBoundsCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;

    VisLibShowSlicingBoundsCommand(QtCrystalManager* manager, bool show)
        : VisLibCrystalManagerCommand(manager, QString(show ? "Show" : "Hide") + " Slicing Bounds"),
          show_(show)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    void unexecute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibShowSlicingBoundsCommand(*this));
    }

private:
    bool show_;
    std::map<int32_t, bool> before_;
};
