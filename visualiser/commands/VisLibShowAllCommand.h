#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>
#include <utility>
#include <vector>

// Shows every atom, bond, contact and primitive of the active crystals ("Show All").
class VisLibShowAllCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;

    explicit VisLibShowAllCommand(QtCrystalManager* manager)
        : VisLibCrystalManagerCommand(manager, "Show All")
    {
    }

    bool execute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    void unexecute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibShowAllCommand(*this)); }

private:
    std::map<int32_t, std::vector<std::pair<HGraphicsObject, bool>>> before_;
};
