#include "VisLibShowAllCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"

bool VisLibShowAllCommand::execute()
{
    before_.clear();
    return VisLibCrystalManagerCommand::execute();
}

void VisLibShowAllCommand::execute(const HGraphicsCrystal& crystal)
{
    auto& before = before_[static_cast<int32_t>(crystal->number())];
    const auto show = [&](const HGraphicsObject& object) {
        before.emplace_back(object, object->visible());
        object->set_visible(true);
    };
    for (const HGraphicsAtom& a : crystal->atoms())
        show(a);
    for (const HGraphicsBond& b : crystal->bonds())
        show(b);
    for (const HGraphicsContact& c : crystal->contacts())
        show(c);
    for (const HGraphicsPrimitive& p : crystal->primitives())
        show(p);
    crystal->changed();
}

void VisLibShowAllCommand::unexecute(const HGraphicsCrystal& crystal)
{
    const auto it = before_.find(static_cast<int32_t>(crystal->number()));
    if (it == before_.end())
        return;
    for (const auto& [object, visible] : it->second)
        object->set_visible(visible);
    crystal->changed();
}
