#include "VisLibEnableContactCriterionCommand.h"

#include "ContactCriterionLookup.h"
#include "GraphicsCrystal.h"

void VisLibEnableContactCriterionCommand::execute(const HGraphicsCrystal& crystal)
{
    const HContactCriterion own =
        ContactCriterionLookup::find(crystal->crystal()->criteria(), *criterion_, true);
    if (!own || own->is_active() == enabled_)
        return;
    // A changed copy rather than a change in place, so that the snapshot keeps the old state.
    const HContactCriterion changed = own->clone();
    changed->set_active(enabled_);
    crystal->update_criterion(own, changed);
}
