#include "VisLibDeleteContactCommand.h"

VisLibDeleteContactCommand::VisLibDeleteContactCommand(QtCrystalManager* manager,
                                                       const HGraphicsCrystal& crystal,
                                                       const HGraphicsContact& contact)
    : VisLibDeleteContactsCommand(manager, "Delete Contact", crystal, contact)
{
}
