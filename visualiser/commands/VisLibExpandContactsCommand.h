#pragma once

#include "VisLibContactTarget.h"
#include "VisLibSnapshotCommand.h"

// Brings in the far molecules of the contacts of one crystal: of one contact ("Expand
// Contact"), or of every contact from an atom or a molecule ("Expand Contacts").
class VisLibExpandContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    VisLibExpandContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                                const HGraphicsAtom& atom);
    VisLibExpandContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal, int molecule);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibExpandContactsCommand(*this)); }

protected:
    // One contact, by its place in the crystal's list. The lookup needs the manager, so it is
    // made once the base holds it.
    VisLibExpandContactsCommand(QtCrystalManager* manager, const QString& name,
                                const HGraphicsCrystal& crystal, const HGraphicsContact& contact);

private:
    VisLibContactTarget target_;
};
