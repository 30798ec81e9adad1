#include "VisLibDisplayPrimitiveCommand.h"

#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"

VisLibDisplayPrimitiveCommand::VisLibDisplayPrimitiveCommand(QtCrystalManager* manager,
                                                             const HGraphicsCrystal& crystal,
                                                             const HGraphicsPrimitive& primitive,
                                                             const HGraphicsObjectCommand& command)
    : VisLibCrystalManagerCommand(manager, QString::fromStdString(command->name())),
      crystal_(graphicsCrystalIdentifier(crystal)), index_(graphicsPrimitiveIdentifier(crystal, primitive)),
      prototype_(command)
{
}

bool VisLibDisplayPrimitiveCommand::execute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    const HGraphicsPrimitive primitive = crystal ? graphicsPrimitive(crystal, index_) : HGraphicsPrimitive();
    if (!primitive)
        return false;
    before_ = primitive->clone();
    primitive->execute(*prototype_->clone());
    crystal->changed();
    return true;
}

bool VisLibDisplayPrimitiveCommand::unexecute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    const HGraphicsPrimitive primitive = crystal ? graphicsPrimitive(crystal, index_) : HGraphicsPrimitive();
    if (!primitive || !before_)
        return false;
    // An undo of a later change of the list may have put a copy in the primitive's place, with a
    // number of its own, so the old properties are kept here rather than by number.
    primitive->copy_display_properties(*before_);
    primitive->set_active(before_->active());
    crystal->changed();
    return true;
}
