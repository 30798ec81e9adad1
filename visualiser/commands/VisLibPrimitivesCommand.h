#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>
#include <vector>

// A command on the crystals' primitives: it copies every crystal's list before it acts, and its
// undo puts the copies back.
class VisLibPrimitivesCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;
    using VisLibCrystalManagerCommand::VisLibCrystalManagerCommand;

    bool execute() override;
    bool unexecute() override;

protected:
    void savePrimitives();
    void restorePrimitives();

private:
    std::map<int32_t, std::vector<HGraphicsPrimitive>> saved_;
};
