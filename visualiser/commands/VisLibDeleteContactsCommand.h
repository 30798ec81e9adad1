#pragma once

#include "VisLibContactTarget.h"
#include "VisLibSnapshotCommand.h"

// Deletes contacts of one crystal: every contact of an atom or of a molecule ("Delete
// Contacts"), or one contact ("Delete Contact").
class VisLibDeleteContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibDeleteContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                const HGraphicsAtom& atom);
    VisLibDeleteContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal, int molecule);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDeleteContactsCommand(*this)); }

protected:
    VisLibDeleteContactsCommand(QtCrystalManager* manager, const QString& name,
                                const VisLibContactTarget& target)
        : VisLibSnapshotCommand(manager, name), target_(target)
    {
    }

private:
    VisLibContactTarget target_;
};
