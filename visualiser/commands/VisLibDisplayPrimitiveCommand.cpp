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
    current_ = prototype_->clone();
    primitive->execute(*current_);
    crystal->changed();
    return true;
}

bool VisLibDisplayPrimitiveCommand::unexecute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    const HGraphicsPrimitive primitive = crystal ? graphicsPrimitive(crystal, index_) : HGraphicsPrimitive();
    if (!primitive || !current_)
        return false;
    primitive->unexecute(*current_);
    crystal->changed();
    return true;
}
