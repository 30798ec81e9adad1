#pragma once

#include "GraphicsObjectStyleCommand.h"

// Draws an atom and the bonds that end at it in one style, so that a ball-and-stick atom is not
// left with wireframe bonds.
class GraphicsAtomStyleCommand : public GraphicsObjectStyleCommand {
public:
    using GraphicsObjectStyleCommand::GraphicsObjectStyleCommand;

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsAtomStyleCommand(*this));
    }
};
