#include "VisLibLabelCellEdgesCommand.h"

#include "GraphicsCell.h"
#include "GraphicsCrystal.h"

void VisLibLabelCellEdgesCommand::execute(const HGraphicsCrystal& crystal)
{
    before_[static_cast<int32_t>(crystal->number())] = crystal->cell()->labelled();
    crystal->cell()->set_labelled(label_);
    crystal->changed();
}

void VisLibLabelCellEdgesCommand::unexecute(const HGraphicsCrystal& crystal)
{
    const auto it = before_.find(static_cast<int32_t>(crystal->number()));
    if (it == before_.end())
        return;
    crystal->cell()->set_labelled(it->second);
    crystal->changed();
}
