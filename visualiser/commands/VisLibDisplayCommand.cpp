#include "VisLibDisplayCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsCrystalCommand.h"

bool VisLibDisplayCommand::execute()
{
    current_ = prototype_->clone();
    changed_.clear();
    return VisLibCrystalManagerCommand::execute();
}

void VisLibDisplayCommand::execute(const HGraphicsCrystal& crystal)
{
    std::vector<HGraphicsObject>& changed = changed_[static_cast<int32_t>(crystal->number())];
    if (dynamic_cast<GraphicsCrystalCommand*>(current_.get())) {
        crystal->execute(*current_);
        changed.push_back(crystal);
    } else {
        for (const HGraphicsAtom& atom : crystal->filtered_atoms(filter_)) {
            atom->execute(*current_);
            changed.push_back(atom);
        }
    }
    crystal->changed();
}

void VisLibDisplayCommand::unexecute(const HGraphicsCrystal& crystal)
{
    const auto it = changed_.find(static_cast<int32_t>(crystal->number()));
    if (it == changed_.end() || !current_)
        return;
    for (auto object = it->second.rbegin(); object != it->second.rend(); ++object)
        (*object)->unexecute(*current_);
    crystal->changed();
}
