#include "GraphicsMonitorPosition.h"

#include "GraphicsAtom.h"
#include "GraphicsCrystalAtomPair.h"

#include <cstdio>

std::string GraphicsMonitorPosition::label() const
{
    const Point& p = atoms().at(0)->atom->ortho();
    char text[96];
    std::snprintf(text, sizeof text, "(%.3f, %.3f, %.3f)", p.x, p.y, p.z);
    return text;
}
