#include "VisLibFindContactsCommand.h"

#include "GraphicsCrystal.h"

VisLibFindContactsCommand::VisLibFindContactsCommand(QtCrystalManager* manager)
    : VisLibSnapshotCommand(manager, "Find Contacts")
{
}

VisLibFindContactsCommand::VisLibFindContactsCommand(QtCrystalManager* manager,
                                                     const HGraphicsCrystal& crystal,
                                                     const HGraphicsAtom& atom)
    : VisLibSnapshotCommand(manager, "Find Contacts")
{
    target_ = {VisLibContactTarget::Atom, graphicsCrystalIdentifier(crystal),
               graphicsAtomIdentifier(crystal, atom)};
}

VisLibFindContactsCommand::VisLibFindContactsCommand(QtCrystalManager* manager,
                                                     const HGraphicsCrystal& crystal, int molecule)
    : VisLibSnapshotCommand(manager, "Find Contacts"), target_{VisLibContactTarget::Molecule,
                                                               graphicsCrystalIdentifier(crystal), molecule}
{
}

void VisLibFindContactsCommand::execute(const HGraphicsCrystal& crystal)
{
    if (target_.kind == VisLibContactTarget::Crystal) {
        crystal->find_contacts();
        return;
    }
    if (static_cast<int32_t>(crystal->number()) != target_.crystal)
        return;
    if (target_.kind == VisLibContactTarget::Molecule) {
        crystal->find_contacts(target_.index);
    } else if (const HGraphicsAtom atom = graphicsAtom(crystal, target_.index)) {
        crystal->find_contacts(*atom);
    }
}
