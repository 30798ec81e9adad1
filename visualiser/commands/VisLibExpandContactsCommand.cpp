#include "VisLibExpandContactsCommand.h"

#include "GraphicsCrystal.h"

VisLibExpandContactsCommand::VisLibExpandContactsCommand(QtCrystalManager* manager,
                                                         const HGraphicsCrystal& crystal,
                                                         const HGraphicsAtom& atom)
    : VisLibSnapshotCommand(manager, "Expand Contacts")
{
    target_ = {VisLibContactTarget::Atom, graphicsCrystalIdentifier(crystal),
               graphicsAtomIdentifier(crystal, atom)};
}

VisLibExpandContactsCommand::VisLibExpandContactsCommand(QtCrystalManager* manager,
                                                         const HGraphicsCrystal& crystal, int molecule)
    : VisLibSnapshotCommand(manager, "Expand Contacts"), target_{VisLibContactTarget::Molecule,
                                                                 graphicsCrystalIdentifier(crystal), molecule}
{
}

VisLibExpandContactsCommand::VisLibExpandContactsCommand(QtCrystalManager* manager, const QString& name,
                                                         const HGraphicsCrystal& crystal,
                                                         const HGraphicsContact& contact)
    : VisLibSnapshotCommand(manager, name)
{
    target_ = {VisLibContactTarget::Contact, graphicsCrystalIdentifier(crystal),
               graphicsContactIdentifier(crystal, contact)};
}

void VisLibExpandContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    if (static_cast<int32_t>(crystal->number()) != target_.crystal)
        return;
    switch (target_.kind) {
    case VisLibContactTarget::Atom:
        if (const HGraphicsAtom atom = graphicsAtom(crystal, target_.index))
            crystal->expand_contacts(*atom);
        break;
    case VisLibContactTarget::Molecule:
        crystal->expand_contacts(target_.index);
        break;
    case VisLibContactTarget::Contact:
        if (const HGraphicsContact contact = graphicsContact(crystal, target_.index))
            crystal->expand_contact(*contact);
        break;
    case VisLibContactTarget::Crystal:
        break;
    }
}
