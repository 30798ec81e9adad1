#include "GraphicsMonitor.h"

#include "GraphicsCrystal.h"
#include "GraphicsCrystalAtomPair.h"

#include <ostream>

GraphicsMonitor::GraphicsMonitor(const std::vector<HGraphicsCrystalAtomPair>& atoms) : atoms_(atoms)
{
    set_color(RGBA(1, 1, 1, 1));
}

Point GraphicsMonitor::position(int i) const
{
    const GraphicsCrystalAtomPair& pair = *atoms_.at(static_cast<std::size_t>(i));
    return pair.crystal->orientation() * (pair.atom->ortho() - pair.crystal->rotation_centre());
}

bool GraphicsMonitor::drawable() const
{
    for (const HGraphicsCrystalAtomPair& pair : atoms_)
        if (!pair->crystal->active() || !pair->atom->active())
            return false;
    return true;
}

void GraphicsMonitor::print(std::ostream& out) const
{
    out << "label:" << value();
}
