#pragma once

#include "Box.h"
#include "VisLibSnapshotCommand.h"

// Packs the active crystals into another box of cells: "Packing Box 0 - 2, 0 - 2, 0 - 1".
class VisLibPackingBoxCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibPackingBoxCommand(QtCrystalManager* manager, const Box& box);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibPackingBoxCommand(*this)); }

private:
    Box box_;
};
