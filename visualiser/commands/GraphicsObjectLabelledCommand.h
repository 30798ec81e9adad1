#pragma once

#include "GraphicsCrystal.h"
#include "GraphicsObjectCommand.h"

#include <map>

// Shows, hides or toggles the labels of objects ("Add label", "Remove label", "Toggle label").
class GraphicsObjectLabelledCommand : public GraphicsObjectCommand {
public:
    explicit GraphicsObjectLabelledCommand(GraphicsCrystal::VisibilityAction action)
        : GraphicsObjectCommand(GraphicsCrystal::label_action_name(action)), action_(action)
    {
    }

    void execute(GraphicsObject& object) override;
    void unexecute(GraphicsObject& object) override;
    HGraphicsObjectCommand clone() const override
    {
        return HGraphicsObjectCommand(new GraphicsObjectLabelledCommand(*this));
    }

private:
    GraphicsCrystal::VisibilityAction action_;
    std::map<uint32_t, bool> old_;
};
