#include "VisLibExpandContactCommand.h"

VisLibExpandContactCommand::VisLibExpandContactCommand(QtCrystalManager* manager,
                                                       const HGraphicsCrystal& crystal,
                                                       const HGraphicsContact& contact)
    : VisLibExpandContactsCommand(manager, "Expand Contact", crystal, contact)
{
}
