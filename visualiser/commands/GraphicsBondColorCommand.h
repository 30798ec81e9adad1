#pragma once

#include "GraphicsObjectColorCommand.h"

#include <map>

// Colours both halves of a bond; any other object as a whole.
class GraphicsBondColorCommand : public GraphicsObjectColorCommand {
public:
    using GraphicsObjectColorCommand::GraphicsObjectColorCommand;

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsBondColorCommand(*this));
    }

private:
    std::map<uint32_t, RGBA> old_second_;
};
