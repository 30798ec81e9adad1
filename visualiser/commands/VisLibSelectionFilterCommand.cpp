#include "VisLibSelectionFilterCommand.h"

void VisLibSelectionFilterCommand::execute(const HGraphicsCrystal& crystal)
{
    if (only_)
        crystal->set_selected(GraphicsCrystal::ActionHide, GraphicsCrystal::FilterSelected);
    crystal->set_selected(action_, filter_);
}
