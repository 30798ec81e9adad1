#pragma once

#include "VisLibDisplayCommand.h"

// Shows, hides or toggles the labels of the atoms a filter gives ("Add label", "Remove label",
// "Toggle label").
class VisLibDisplayLabelledCommand : public VisLibDisplayCommand {
public:
    VisLibDisplayLabelledCommand(QtCrystalManager* manager, GraphicsCrystal::VisibilityAction action,
                                 GraphicsCrystal::Filter filter);
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDisplayLabelledCommand(*this)); }
};
