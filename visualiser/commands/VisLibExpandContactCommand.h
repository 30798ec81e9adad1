#pragma once

#include "VisLibExpandContactsCommand.h"

// Brings in the far molecule of one contact ("Expand Contact").
class VisLibExpandContactCommand : public VisLibExpandContactsCommand {
public:
    VisLibExpandContactCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                               const HGraphicsContact& contact);

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibExpandContactCommand(*this)); }
};
