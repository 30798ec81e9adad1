#include "VisLibDisplayObjectCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsCell.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"
#include "Logger.h"

VisLibDisplayObjectCommand::VisLibDisplayObjectCommand(QtCrystalManager* manager,
                                                       const HGraphicsCrystal& crystal,
                                                       const HGraphicsObject& object,
                                                       const HGraphicsObjectCommand& command)
    : VisLibCrystalManagerCommand(manager, QString::fromStdString(command->name())),
      crystal_(graphicsCrystalIdentifier(crystal)), prototype_(command)
{
    if (object.cast<GraphicsPrimitive>()) {
        logError("VisLibDisplayObjectCommand does not work correctly on GraphicsPrimitive objects");
    } else if (const HGraphicsAtom atom = object.cast<GraphicsAtom>()) {
        kind_ = Atom;
        index_ = graphicsAtomIdentifier(crystal, atom);
    } else if (const HGraphicsBond bond = object.cast<GraphicsBond>()) {
        kind_ = Bond;
        index_ = graphicsBondIdentifier(crystal, bond);
    } else if (const HGraphicsContact contact = object.cast<GraphicsContact>()) {
        kind_ = Contact;
        index_ = graphicsContactIdentifier(crystal, contact);
    } else if (object.get() == crystal->cell().get()) {
        kind_ = Cell;
    }
}

HGraphicsObject VisLibDisplayObjectCommand::object(const HGraphicsCrystal& crystal) const
{
    switch (kind_) {
    case Atom:
        return graphicsAtom(crystal, index_);
    case Bond:
        return graphicsBond(crystal, index_);
    case Contact:
        return graphicsContact(crystal, index_);
    case Cell:
        return crystal->cell();
    case None:
        break;
    }
    return HGraphicsObject();
}

bool VisLibDisplayObjectCommand::execute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    if (!crystal)
        return false;
    const HGraphicsObject target = object(crystal);
    if (!target)
        return false;
    current_ = prototype_->clone();
    target->execute(*current_);
    crystal->changed();
    return true;
}

bool VisLibDisplayObjectCommand::unexecute()
{
    const HGraphicsCrystal crystal = graphicsCrystal(crystal_);
    const HGraphicsObject target = crystal ? object(crystal) : HGraphicsObject();
    if (!target || !current_)
        return false;
    target->unexecute(*current_);
    crystal->changed();
    return true;
}
