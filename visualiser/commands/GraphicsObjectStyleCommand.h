#pragma once

#include "GraphicsObject.h"
#include "GraphicsObjectCommand.h"

#include <map>

// Draws objects in one style; its name is the style's, as "Style: Wireframe".
class GraphicsObjectStyleCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectStyleCommand(GraphicsObject::RenderingStyle style)
        : GraphicsObjectCommand(GraphicsObject::style_name(style)), style_(style)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectStyleCommand(*this));
    }

private:
    GraphicsObject::RenderingStyle style_;
    std::map<uint32_t, GraphicsObject::RenderingStyle> old_;
};
