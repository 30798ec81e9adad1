#include "VisLibRemovePrimitiveCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"
#include "Logger.h"
#include "QtCrystalManager.h"

#include <algorithm>

VisLibRemovePrimitiveCommand::VisLibRemovePrimitiveCommand(QtCrystalManager* manager,
                                                           const HGraphicsPrimitive& primitive)
    : VisLibPrimitivesCommand(manager, "Remove Object")
{
    for (const HGraphicsCrystal& crystal : manager->graphicsCrystals()) {
        const auto& list = crystal->primitives();
        const auto it = std::find(list.begin(), list.end(), primitive);
        if (it != list.end()) {
            crystal_ = static_cast<int32_t>(crystal->number());
            index_ = static_cast<int>(it - list.begin());
        }
    }
}

bool VisLibRemovePrimitiveCommand::execute()
{
    const HGraphicsCrystal crystal = crystal_ < 0 ? HGraphicsCrystal() : graphicsCrystal(crystal_);
    const HGraphicsPrimitive primitive = crystal ? graphicsPrimitive(crystal, index_) : HGraphicsPrimitive();
    if (!primitive) {
        logError("VisLibRemovePrimitiveCommand cannot find the object to be removed");
        return false;
    }
    savePrimitives();
    crystal->remove_primitive(primitive);
    return true;
}
