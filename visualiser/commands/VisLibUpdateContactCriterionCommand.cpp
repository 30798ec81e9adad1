#include "VisLibUpdateContactCriterionCommand.h"

#include "ContactCriterionLookup.h"
#include "GraphicsCrystal.h"

void VisLibUpdateContactCriterionCommand::execute(const HGraphicsCrystal& crystal)
{
    if (const HContactCriterion own = ContactCriterionLookup::find(crystal->crystal()->criteria(), *old_))
        crystal->update_criterion(own, new_->clone());
}
