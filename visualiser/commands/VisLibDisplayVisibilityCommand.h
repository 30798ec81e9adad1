#pragma once

#include "VisLibDisplayCommand.h"

// Shows, hides or toggles the atoms a filter gives ("Show", "Hide", "Toggle").
class VisLibDisplayVisibilityCommand : public VisLibDisplayCommand {
public:
    VisLibDisplayVisibilityCommand(QtCrystalManager* manager, GraphicsCrystal::VisibilityAction action,
                                   GraphicsCrystal::Filter filter);
    HVisLibCommand clone() const override
    {
        return HVisLibCommand(new VisLibDisplayVisibilityCommand(*this));
    }
};
