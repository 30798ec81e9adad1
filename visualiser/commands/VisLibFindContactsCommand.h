#pragma once

#include "VisLibContactTarget.h"
#include "VisLibSnapshotCommand.h"

// Looks for contacts by the active definitions: from one atom or one molecule of a crystal, or
// from every molecule of the active crystals ("Find Contacts").
class VisLibFindContactsCommand : public VisLibSnapshotCommand {
public:
    using VisLibSnapshotCommand::execute;

    explicit VisLibFindContactsCommand(QtCrystalManager* manager);
    VisLibFindContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                              const HGraphicsAtom& atom);
    VisLibFindContactsCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal, int molecule);

    void execute(const HGraphicsCrystal& crystal) override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibFindContactsCommand(*this)); }

private:
    VisLibContactTarget target_;
};
