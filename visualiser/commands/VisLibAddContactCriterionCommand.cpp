#include "VisLibAddContactCriterionCommand.h"

#include "GraphicsCrystal.h"

void VisLibAddContactCriterionCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->add_criterion(criterion_->clone());
}
