#include "VisLibCrystalManagerCommand.h"

#include "GraphicsAtom.h"
#include "GraphicsBond.h"
#include "GraphicsContact.h"
#include "GraphicsCrystal.h"
#include "GraphicsPrimitive.h"
#include "LogAddress.h"
#include "Logger.h"
#include "QtCrystalManager.h"

#include <algorithm>

bool VisLibCrystalManagerCommand::execute()
{
    // A copy: the command may change the manager's list.
    const std::vector<HGraphicsCrystal> crystals = manager_->graphicsCrystals();
    for (const HGraphicsCrystal& crystal : crystals)
        if (crystal->active())
            execute(crystal);
    return true;
}

bool VisLibCrystalManagerCommand::unexecute()
{
    const std::vector<HGraphicsCrystal> crystals = manager_->graphicsCrystals();
    for (const HGraphicsCrystal& crystal : crystals)
        if (crystal->active())
            unexecute(crystal);
    return true;
}

void VisLibCrystalManagerCommand::execute(const HGraphicsCrystal&)
{
}

void VisLibCrystalManagerCommand::unexecute(const HGraphicsCrystal&)
{
}

int32_t VisLibCrystalManagerCommand::graphicsCrystalIdentifier(const HGraphicsCrystal& crystal) const
{
    const auto& list = manager_->graphicsCrystals();
    if (std::find(list.begin(), list.end(), crystal) == list.end()) {
        logError(
            "VisLibCrystalManagerCommand::graphicsCrystalIdentifier: could not find crystal at address %08X",
            log_address(crystal.get()));
        return -1;
    }
    return static_cast<int32_t>(crystal->number());
}

HGraphicsCrystal VisLibCrystalManagerCommand::graphicsCrystal(int32_t identifier) const
{
    for (const HGraphicsCrystal& crystal : manager_->graphicsCrystals())
        if (static_cast<int32_t>(crystal->number()) == identifier)
            return crystal;
    logError("VisLibCrystalManagerCommand::graphicsCrystal: could not find crystal number %d", identifier);
    return HGraphicsCrystal();
}

namespace {

template <class T>
int index_of(const std::vector<T>& list, const T& object, const char* what, const char* word,
             const GraphicsCrystal* crystal)
{
    const auto it = std::find(list.begin(), list.end(), object);
    if (it == list.end()) {
        logError(
            "VisLibCrystalManagerCommand::graphics%sIdentifier: could not find %s at %08X in crystal %08X",
            what, word, log_address(object.get()), log_address(crystal));
        return -1;
    }
    return static_cast<int>(it - list.begin());
}

template <class T>
T at(const std::vector<T>& list, int index, const char* what, const char* word,
     const GraphicsCrystal* crystal)
{
    if (index < 0 || index >= static_cast<int>(list.size())) {
        logError("VisLibCrystalManagerCommand::graphics%s: could not find %s number %d in crystal %08X", what,
                 word, index, log_address(crystal));
        return T();
    }
    return list[static_cast<std::size_t>(index)];
}

} // namespace

int VisLibCrystalManagerCommand::graphicsAtomIdentifier(const HGraphicsCrystal& crystal,
                                                        const HGraphicsAtom& atom) const
{
    return index_of(crystal->atoms(), atom, "Atom", "atom", crystal.get());
}

HGraphicsAtom VisLibCrystalManagerCommand::graphicsAtom(const HGraphicsCrystal& crystal, int index) const
{
    return at(crystal->atoms(), index, "Atom", "atom", crystal.get());
}

int VisLibCrystalManagerCommand::graphicsBondIdentifier(const HGraphicsCrystal& crystal,
                                                        const HGraphicsBond& bond) const
{
    return index_of(crystal->bonds(), bond, "Bond", "bond", crystal.get());
}

HGraphicsBond VisLibCrystalManagerCommand::graphicsBond(const HGraphicsCrystal& crystal, int index) const
{
    return at(crystal->bonds(), index, "Bond", "bond", crystal.get());
}

int VisLibCrystalManagerCommand::graphicsContactIdentifier(const HGraphicsCrystal& crystal,
                                                           const HGraphicsContact& contact) const
{
    return index_of(crystal->contacts(), contact, "Contact", "contact", crystal.get());
}

HGraphicsContact VisLibCrystalManagerCommand::graphicsContact(const HGraphicsCrystal& crystal,
                                                              int index) const
{
    return at(crystal->contacts(), index, "Contact", "contact", crystal.get());
}

int VisLibCrystalManagerCommand::graphicsPrimitiveIdentifier(const HGraphicsCrystal& crystal,
                                                             const HGraphicsPrimitive& primitive) const
{
    return index_of(crystal->primitives(), primitive, "Primitive", "primitive", crystal.get());
}

HGraphicsPrimitive VisLibCrystalManagerCommand::graphicsPrimitive(const HGraphicsCrystal& crystal,
                                                                  int index) const
{
    return at(crystal->primitives(), index, "Primitive", "primitive", crystal.get());
}
