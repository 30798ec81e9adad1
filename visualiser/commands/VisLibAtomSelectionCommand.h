#pragma once

#include "VisLibSelectionCommand.h"

#include <vector>

// Selects or deselects picked atoms of one crystal: "Select Atom", "Deselect Atom", or "Changed
// selection" for several.
class VisLibAtomSelectionCommand : public VisLibSelectionCommand {
public:
    using VisLibSelectionCommand::execute;

    VisLibAtomSelectionCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                               const std::vector<HGraphicsAtom>& atoms, bool select);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibAtomSelectionCommand(*this)); }

private:
    int32_t crystal_;
    std::vector<int> atoms_;
    bool select_;
};
