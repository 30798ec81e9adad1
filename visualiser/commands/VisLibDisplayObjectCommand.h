#pragma once

#include "GraphicsObjectCommand.h"
#include "VisLibCrystalManagerCommand.h"

// A display change of one atom, bond or contact, or of a crystal's cell, found again by its
// crystal and its place in the crystal's list. Named after its object command.
class VisLibDisplayObjectCommand : public VisLibCrystalManagerCommand {
public:
    // A primitive is logged and left alone: VisLibDisplayPrimitiveCommand is for primitives.
    VisLibDisplayObjectCommand(QtCrystalManager* manager, const HGraphicsCrystal& crystal,
                               const HGraphicsObject& object, const HGraphicsObjectCommand& command);

    bool execute() override;
    bool unexecute() override;
    HVisLibCommand clone() const override { return HVisLibCommand(new VisLibDisplayObjectCommand(*this)); }

private:
    enum Kind { None, Atom, Bond, Contact, Cell };
    HGraphicsObject object(const HGraphicsCrystal& crystal) const;

    int32_t crystal_;
    Kind kind_ = None;
    int index_ = -1;
    HGraphicsObjectCommand prototype_;
    HGraphicsObjectCommand current_;
};
