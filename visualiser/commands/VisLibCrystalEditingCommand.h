#pragma once

#include "GraphicsCrystalMemento.h"
#include "VisLibCrystalManagerCommand.h"

// An edit of the structure of one crystal, active or not. It keeps a snapshot of that crystal
// for its undo; the toolkit's refusal of an edit reaches the caller as its exception.
class VisLibCrystalEditingCommand : public VisLibCrystalManagerCommand {
public:
    VisLibCrystalEditingCommand(QtCrystalManager* manager, const QString& name,
                                const HGraphicsCrystal& crystal)
        : VisLibCrystalManagerCommand(manager, name), crystal_(graphicsCrystalIdentifier(crystal))
    {
    }

    bool execute() override;
    bool unexecute() override;

protected:
    virtual void edit(const HGraphicsCrystal& crystal) = 0;

private:
    int32_t crystal_;
    THandle<GraphicsCrystalMemento> snapshot_;
};
