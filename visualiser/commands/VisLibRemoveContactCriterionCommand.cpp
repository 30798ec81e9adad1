#include "VisLibRemoveContactCriterionCommand.h"

#include "ContactCriterionLookup.h"
#include "GraphicsCrystal.h"

void VisLibRemoveContactCriterionCommand::execute(const HGraphicsCrystal& crystal)
{
    if (const HContactCriterion own =
            ContactCriterionLookup::find(crystal->crystal()->criteria(), *criterion_))
        crystal->remove_criterion(own);
}
