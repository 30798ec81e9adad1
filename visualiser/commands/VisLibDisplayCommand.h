#pragma once

#include "GraphicsCrystal.h"
#include "GraphicsObjectCommand.h"
#include "VisLibCrystalManagerCommand.h"

#include <map>
#include <vector>

// A display change of the atoms a filter gives, in every active crystal, made by an object
// command; a crystal-wide object command is given the crystal itself. Its undo gives the
// objects it changed their old values back.
class VisLibDisplayCommand : public VisLibCrystalManagerCommand {
public:
    using VisLibCrystalManagerCommand::execute;
    using VisLibCrystalManagerCommand::unexecute;

    VisLibDisplayCommand(QtCrystalManager* manager, const QString& name, GraphicsCrystal::Filter filter,
                         const HGraphicsObjectCommand& command)
        : VisLibCrystalManagerCommand(manager, name), filter_(filter), prototype_(command)
    {
    }

    bool execute() override;
    void execute(const HGraphicsCrystal& crystal) override;
    void unexecute(const HGraphicsCrystal& crystal) override;

private:
    GraphicsCrystal::Filter filter_;
    HGraphicsObjectCommand prototype_;
    // A fresh copy of the prototype for each run, holding that run's old values.
    HGraphicsObjectCommand current_;
    std::map<int32_t, std::vector<HGraphicsObject>> changed_;
};
