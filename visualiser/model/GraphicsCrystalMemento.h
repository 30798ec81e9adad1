#pragma once

#include "GraphicsCrystalState.h"
#include "GraphicsObject.h"
#include "NewCrystalMemento.h"

#include <vector>

// A snapshot of a GraphicsCrystal for undo: what the toolkit crystal needs to rebuild itself,
// copies of the drawn objects with their display properties, and the view settings. The copies
// have numbers of their own and no links to the crystal's objects, so later edits do not reach
// them.
class GraphicsCrystalMemento : public GraphicsObject {
public:
    explicit GraphicsCrystalMemento(const GraphicsCrystal& crystal);

private:
    friend class GraphicsCrystal;

    NewCrystalMemento crystal_;
    std::vector<HGraphicsAtom> atoms_;
    std::vector<HGraphicsBond> bonds_;
    std::vector<HGraphicsPrimitive> primitives_;
    std::vector<HGraphicsContact> contacts_;
    HGraphicsCell cell_;
    GraphicsCrystalState::Settings settings_;
};
