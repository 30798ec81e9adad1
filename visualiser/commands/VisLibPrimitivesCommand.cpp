#include "VisLibPrimitivesCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"
#include "LogAddress.h"
#include "Logger.h"
#include "QtCrystalManager.h"

namespace {

std::vector<HGraphicsPrimitive> copies(const std::vector<HGraphicsPrimitive>& list)
{
    std::vector<HGraphicsPrimitive> out;
    for (const HGraphicsPrimitive& p : list)
        out.push_back(p->clone());
    return out;
}

} // namespace

bool VisLibPrimitivesCommand::execute()
{
    savePrimitives();
    return VisLibCrystalManagerCommand::execute();
}

bool VisLibPrimitivesCommand::unexecute()
{
    restorePrimitives();
    return true;
}

void VisLibPrimitivesCommand::savePrimitives()
{
    saved_.clear();
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        const int32_t id = static_cast<int32_t>(crystal->number());
        saved_[id] = copies(crystal->primitives());
        logDebug(3, "VisLibPrimitivesCommand::savePrimitives() saved id %d at %08X", id,
                 log_address(crystal.get()));
    }
}

void VisLibPrimitivesCommand::restorePrimitives()
{
    for (const HGraphicsCrystal& crystal : manager()->graphicsCrystals()) {
        const int32_t id = static_cast<int32_t>(crystal->number());
        const auto it = saved_.find(id);
        if (it == saved_.end()) {
            logError("VisLibPrimitivesCommand::restorePrimitives: could not find copy of primitives at "
                     "address %08X",
                     log_address(crystal.get()));
            continue;
        }
        // Copies again, so that a second undo finds its own untouched list.
        crystal->set_primitives(copies(it->second));
        logDebug(3, "VisLibPrimitivesCommand::restorePrimitives() restored id %d at %08X", id,
                 log_address(crystal.get()));
    }
}
