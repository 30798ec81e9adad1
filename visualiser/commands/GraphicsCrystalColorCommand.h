#pragma once

#include "GraphicsAtom.h"
#include "GraphicsCrystal.h"
#include "GraphicsCrystalCommand.h"
#include "RGBA.h"

#include <map>
#include <tuple>
#include <utility>

// Colours the atoms a filter gives by a colour mode (by element, by symmetry tag, by molecule,
// or one colour), and each bond half that touches one of them with its atom's new colour.
class GraphicsCrystalColorCommand : public GraphicsCrystalCommand {
public:
    GraphicsCrystalColorCommand(GraphicsObject::ColorMode mode, const RGBA& color,
                                GraphicsCrystal::Filter filter)
        : GraphicsCrystalCommand("Change color"), mode_(mode), color_(color), filter_(filter)
    {
    }

    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsCrystalColorCommand(*this));
    }

protected:
    void execute(GraphicsCrystal& crystal) override;
    void unexecute(GraphicsCrystal& crystal) override;

private:
    GraphicsObject::ColorMode mode_;
    RGBA color_;
    GraphicsCrystal::Filter filter_;
    struct Before {
        std::vector<std::pair<HGraphicsAtom, RGBA>> atoms;
        // The bond, which half (0 the first atom's), and its colour. The bonds belong to the
        // crystal's pool, which lives as long as the crystal this is kept for.
        std::vector<std::tuple<GraphicsBond*, int, RGBA>> halves;
    };
    // By crystal number: one command may colour several crystals.
    std::map<uint32_t, Before> before_;
};
