#include "VisLibShowCellEdgesCommand.h"

#include "GraphicsCell.h"
#include "GraphicsCrystal.h"

void VisLibShowCellEdgesCommand::execute(const HGraphicsCrystal& crystal)
{
    before_[static_cast<int32_t>(crystal->number())] = crystal->cell()->visible();
    crystal->cell()->set_visible(show_);
    crystal->changed();
}

void VisLibShowCellEdgesCommand::unexecute(const HGraphicsCrystal& crystal)
{
    const auto it = before_.find(static_cast<int32_t>(crystal->number()));
    if (it == before_.end())
        return;
    crystal->cell()->set_visible(it->second);
    crystal->changed();
}
