#include "VisLibSnapshotCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsCrystalMemento.h"
#include "LogAddress.h"
#include "Logger.h"
#include "QtCrystalManager.h"

bool VisLibSnapshotCommand::execute()
{
    saveSnapshots();
    return VisLibCrystalManagerCommand::execute();
}

bool VisLibSnapshotCommand::unexecute()
{
    restoreSnapshots();
    return true;
}

void VisLibSnapshotCommand::saveSnapshots()
{
    snapshots_.clear();
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        THandle<GraphicsCrystalMemento> snapshot(new GraphicsCrystalMemento(*crystal));
        const int32_t id = static_cast<int32_t>(crystal->number());
        snapshots_[id] = snapshot;
        logDebug(3, "VisLibSnapshotCommand::saveSnapshots() saved id %d at %08X to %08X", id,
                 log_address(crystal.get()), log_address(snapshot.get()));
    }
}

void VisLibSnapshotCommand::restoreSnapshots()
{
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        const int32_t id = static_cast<int32_t>(crystal->number());
        const auto it = snapshots_.find(id);
        if (it == snapshots_.end()) {
            logError(
                "VisLibSnapshotCommand::restoreSnapshots: could not find snapshot of crystal at address %08X",
                log_address(crystal.get()));
            continue;
        }
        *crystal = *it->second;
        logDebug(3, "VisLibSnapshotCommand::restoreSnapshots() restored id %d at %08X from %08X", id,
                 log_address(crystal.get()), log_address(it->second.get()));
    }
}
