#pragma once

#include "GraphicsCrystal.h"
#include "VisLibSelectionCommand.h"

// Selects, deselects or toggles the atoms a filter gives in the active crystals; with `only`,
// everything else is deselected first. Its name is given by the caller ("Select Hydrogens"...).
class VisLibSelectionFilterCommand : public VisLibSelectionCommand {
public:
    using VisLibSelectionCommand::execute;

    VisLibSelectionFilterCommand(QtCrystalManager* manager, const QString& name,
                                 GraphicsCrystal::VisibilityAction action, GraphicsCrystal::Filter filter,
                                 bool only = false)
        : VisLibSelectionCommand(manager, name), action_(action), filter_(filter), only_(only)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibSelectionFilterCommand(*this)); }

private:
    GraphicsCrystal::VisibilityAction action_;
    GraphicsCrystal::Filter filter_;
    bool only_;
};
