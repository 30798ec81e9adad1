#pragma once

#include "GraphicsObjectCommand.h"

#include <map>
#include <string>

// Gives objects a new label text ("Change label").
class GraphicsObjectLabelCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectLabelCommand(const std::string& label)
        : GraphicsObjectCommand("Change label"), label_(label)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectLabelCommand(*this));
    }

private:
    std::string label_;
    std::map<uint32_t, std::string> old_;
};
