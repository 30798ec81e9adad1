#pragma once

#include "GraphicsObjectCommand.h"
#include "RGBA.h"

#include <map>

// Gives objects one colour ("Change color").
class GraphicsObjectColorCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectColorCommand(const RGBA& color)
        : GraphicsObjectCommand("Change color"), color_(color)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectColorCommand(*this));
    }

protected:
    const RGBA& color() const { return color_; }

private:
    RGBA color_;
    std::map<uint32_t, RGBA> old_;
};
