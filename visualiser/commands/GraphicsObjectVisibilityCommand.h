#pragma once

#include "GraphicsCrystal.h"
#include "GraphicsObjectCommand.h"

#include <map>

// Shows, hides or toggles objects ("Show", "Hide", "Toggle").
class GraphicsObjectVisibilityCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectVisibilityCommand(GraphicsCrystal::VisibilityAction action)
        : GraphicsObjectCommand(GraphicsCrystal::action_name(action)), action_(action)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectVisibilityCommand(*this));
    }

private:
    GraphicsCrystal::VisibilityAction action_;
    std::map<uint32_t, bool> old_;
};
