#include "VisLibShowSlicingBoundsCommand.h"

#include "GraphicsCrystal.h"

void VisLibShowSlicingBoundsCommand::execute(const HGraphicsCrystal& crystal)
{
    before_[static_cast<int32_t>(crystal->number())] = crystal->show_slicing_bounds();
    crystal->set_show_slicing_bounds(show_);
}

void VisLibShowSlicingBoundsCommand::unexecute(const HGraphicsCrystal& crystal)
{
    const auto it = before_.find(static_cast<int32_t>(crystal->number()));
    if (it != before_.end())
        crystal->set_show_slicing_bounds(it->second);
}
