#pragma once

#include "VisLibCommand.h"

#include <vector>

// Several commands that undo and redo as one: run in order, undone in reverse. A member that
// fails stops the run and leaves what ran done.
class VisLibMacroCommand : public VisLibCommand {
public:
    VisLibMacroCommand(const QString& name, const std::vector<HVisLibCommand>& commands)
        : VisLibCommand(name), commands_(commands)
    {
    }

    bool execute() override;
    bool unexecute() override;
    // The members are cloned too, so the copy keeps no state with this one.
    HVisLibCommand clone() const override;

private:
    std::vector<HVisLibCommand> commands_;
};
