#include "VisLibClearContactCriteriaCommand.h"

#include "GraphicsCrystal.h"

void VisLibClearContactCriteriaCommand::execute(const HGraphicsCrystal& crystal)
{
    crystal->set_criteria({});
}
