#include "VisLibAddPrimitiveCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"

VisLibAddPrimitiveCommand::VisLibAddPrimitiveCommand(QtCrystalManager* manager,
                                                     const HGraphicsCrystal& crystal,
                                                     const HGraphicsPrimitive& primitive)
    : VisLibPrimitivesCommand(manager, "Add Object"), crystal_(graphicsCrystalIdentifier(crystal)),
      primitive_(primitive)
{
}

void VisLibAddPrimitiveCommand::execute(const HGraphicsCrystal& crystal)
{
    // A copy for each run: an undo puts back a list without the object, and a redo adds anew.
    if (static_cast<int32_t>(crystal->number()) == crystal_)
        crystal->add_primitive(primitive_->clone());
}
