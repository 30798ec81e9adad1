#pragma once

#include "GraphicsObjectCommand.h"

#include <map>

// Makes objects (crystals, in practice) active or not ("Change Active State").
class GraphicsObjectActiveCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectActiveCommand(bool active)
        : GraphicsObjectCommand("Change Active State"), active_(active)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectActiveCommand(*this));
    }

private:
    bool active_;
    std::map<uint32_t, bool> old_;
};
