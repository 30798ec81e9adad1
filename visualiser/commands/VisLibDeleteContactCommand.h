#pragma once

#include "VisLibDeleteContactsCommand.h"

// Deletes one contact ("Delete Contact").
class VisLibDeleteContactCommand : public VisLibDeleteContactsCommand {
public:
    VisLibDeleteContactCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                               const HGraphicsContact& contact);

    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDeleteContactCommand(*this)); }
};
