#pragma once

#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"

// An atom together with the crystal that draws it: a measurement may join atoms of different
// crystals, each moved by its own crystal's orientation.
struct GraphicsCrystalAtomPair {
    HGraphicsCrystal crystal;
    HGraphicsAtom atom;
};
