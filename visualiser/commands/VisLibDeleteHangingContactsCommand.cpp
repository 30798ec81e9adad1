#include "VisLibDeleteHangingContactsCommand.h"

#include "GraphicsCrystal.h"

void VisLibDeleteHangingContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->delete_hanging_contacts();
}
