#pragma once

#include "GraphicsObjectColorCommand.h"

#include <map>
#include <utility>

// Colours an atom together with the half of each of its bonds that touches it, so the bonds
// keep matching their atoms; any other object is coloured as a whole.
class GraphicsAtomColorCommand : public GraphicsObjectColorCommand {
public:
    using GraphicsObjectColorCommand::GraphicsObjectColorCommand;

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsAtomColorCommand(*this));
    }

private:
    // By bond number and half (0 the first atom's).
    std::map<std::pair<uint32_t, int>, RGBA> old_halves_;
};
