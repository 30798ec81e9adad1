#pragma once

#include "GraphicsCrystalMemento.h"
#include "VisLibCrystalManagerCommand.h"

#include <map>

// A command whose change rebuilds crystals: rather than work out the way back, it takes a
// snapshot of every crystal before it acts, and its undo restores them.
class VisLibSnapshotCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;
    using VisLibCrystalManagerCommand::VisLibCrystalManagerCommand;

    bool execute() override;
    bool unexecute() override;

protected:
    void saveSnapshots();
    void restoreSnapshots();

private:
    std::map<int32_t, THandle<GraphicsCrystalMemento>> snapshots_;
};
