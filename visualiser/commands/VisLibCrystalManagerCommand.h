#pragma once

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"
#include "VisLibCommand.h"

#include <cstdint>

class QtCrystalManager;

// A command on the crystals of a manager: by default it acts on each active crystal. It holds
// crystals by their numbers and objects by their places in the crystal's lists, never by
// pointer, since a rebuild or a snapshot may replace them; the lookups log what they cannot find.
class VisLibCrystalManagerCommand : public VisLibCommand {
public:
    VisLibCrystalManagerCommand(QtCrystalManager* manager, const QString& name)
        : VisLibCommand(name), manager_(manager)
    {
    }

    bool execute() override;
    bool unexecute() override;
    virtual void execute(const HGraphicsCrystal& crystal);
    virtual void unexecute(const HGraphicsCrystal& crystal);

protected:
    QtCrystalManager* manager() const { return manager_; }

    // -1 for a crystal the manager does not hold.
    int32_t graphicsCrystalIdentifier(const HGraphicsCrystal& crystal) const;
    HGraphicsCrystal graphicsCrystal(int32_t identifier) const;
    // The place of an object in the crystal's current list, or -1.
    int graphicsAtomIdentifier(const HGraphicsCrystal& crystal, const HGraphicsAtom& atom) const;
    HGraphicsAtom graphicsAtom(const HGraphicsCrystal& crystal, int index) const;
    int graphicsBondIdentifier(const HGraphicsCrystal& crystal, const HGraphicsBond& bond) const;
    HGraphicsBond graphicsBond(const HGraphicsCrystal& crystal, int index) const;
    int graphicsContactIdentifier(const HGraphicsCrystal& crystal, const HGraphicsContact& contact) const;
    HGraphicsContact graphicsContact(const HGraphicsCrystal& crystal, int index) const;
    int graphicsPrimitiveIdentifier(const HGraphicsCrystal& crystal,
                                    const HGraphicsPrimitive& primitive) const;
    HGraphicsPrimitive graphicsPrimitive(const HGraphicsCrystal& crystal, int index) const;

private:
    QtCrystalManager* manager_;
};
