#include "VisLibDeleteContactsCommand.h"

#include "GraphicsCrystal.h"

VisLibDeleteContactsCommand::VisLibDeleteContactsCommand(QtCrystalManager* manager,
                                                         const HGraphicsCrystal& crystal,
                                                         const HGraphicsAtom& atom)
    : VisLibSnapshotCommand(manager, "Delete Contacts")
{
    target_ = {VisLibContactTarget::Atom, graphicsCrystalIdentifier(crystal),
               graphicsAtomIdentifier(crystal, atom)};
}

VisLibDeleteContactsCommand::VisLibDeleteContactsCommand(QtCrystalManager* manager,
                                                         const HGraphicsCrystal& crystal, int molecule)
    : VisLibSnapshotCommand(manager, "Delete Contacts"), target_{VisLibContactTarget::Molecule,
                                                                 graphicsCrystalIdentifier(crystal), molecule}
{
}

VisLibDeleteContactsCommand::VisLibDeleteContactsCommand(QtCrystalManager* manager, const QString& name,
                                                         const HGraphicsCrystal& crystal,
                                                         const HGraphicsContact& contact)
    : VisLibSnapshotCommand(manager, name)
{
    target_ = {VisLibContactTarget::Contact, graphicsCrystalIdentifier(crystal),
               graphicsContactIdentifier(crystal, contact)};
}

void VisLibDeleteContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    if (static_cast<int32_t>(crystal->number()) != target_.crystal)
        return;
    switch (target_.kind) {
    case VisLibContactTarget::Atom:
        if (const HGraphicsAtom atom = graphicsAtom(crystal, target_.index))
            crystal->delete_contacts(*atom);
        break;
    case VisLibContactTarget::Molecule:
        crystal->delete_contacts(target_.index);
        break;
    case VisLibContactTarget::Contact:
        if (const HGraphicsContact contact = graphicsContact(crystal, target_.index))
            crystal->delete_contact(*contact);
        break;
    case VisLibContactTarget::Crystal:
        break;
    }
}
