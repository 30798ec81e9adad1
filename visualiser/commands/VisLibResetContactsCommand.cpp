#include "VisLibResetContactsCommand.h"

#include "GraphicsCrystal.h"

void VisLibResetContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->reset_contacts();
}
