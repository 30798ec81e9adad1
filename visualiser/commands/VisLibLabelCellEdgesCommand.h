#pragma once

#include "VisLibCrystalManagerCommand.h"

#include <map>

// Labels the cell axes of the active crystals or takes the labels off ("Label Cell Axes",
// "Unlabel Cell Axes").
class VisLibLabelCellEdgesCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;

    VisLibLabelCellEdgesCommand(QtCrystalManager* manager, bool label)
        : VisLibCrystalManagerCommand(manager, QString(label ? "Label" : "Unlabel") + " Cell Axes"),
          label_(label)
    {
    }

    void execute(const HGraphicsCrystal& crystal) override;
    void unexecute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibLabelCellEdgesCommand(*this)); }

private:
    bool label_;
    std::map<int32_t, bool> before_;
};
