#include "VisLibExpandAllContactsCommand.h"

#include "GraphicsCrystal.h"

void VisLibExpandAllContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->expand_all_contacts();
}
