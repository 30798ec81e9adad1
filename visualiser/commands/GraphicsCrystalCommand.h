#pragma once

#include "GraphicsObjectCommand.h"

class GraphicsCrystal;

// A change that concerns a whole crystal. Given any other object it logs and does nothing.
class GraphicsCrystalCommand : public GraphicsObjectCommand {
public:
    using GraphicsObjectCommand::GraphicsObjectCommand;

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;

protected:
    virtual void execute(GraphicsCrystal& crystal) = 0;
    virtual void unexecute(GraphicsCrystal& crystal) = 0;
};
