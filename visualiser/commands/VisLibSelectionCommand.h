#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>
#include <vector>

// A change of selection: before it acts it saves which atoms of each crystal are selected, and
// its undo selects them again.
class VisLibSelectionCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;
    using VisLibCrystalManagerCommand::VisLibCrystalManagerCommand;

    bool execute() override;
    bool unexecute() override;

protected:
    void restoreSelection();

private:
    std::map<int32_t, std::vector<bool>> selected_;
};
