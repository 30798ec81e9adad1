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
    // One contact, by its place in the crystal's list. The lookup needs the manager, so it is
    // made once the base holds it.
    VisLibDeleteContactsCommand(QtCrystalManager* manager, const QString& name,
                                const HGraphicsCrystal& crystal, const HGraphicsContact& contact);

private:
    VisLibContactTarget target_;
};
