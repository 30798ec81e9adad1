#pragma once

#include "THandle.h"

#include <QString>

class Renderer;
class RendererCommand;
using HRendererCommand = THandle<RendererCommand>;

// A change of a renderer's camera, rotation centre or measurements. It saves what it will change
// as it runs, so its undo can put that back.
class RendererCommand {
public:
    explicit RendererCommand(const QString& name) : name_(name) {}
    virtual ~RendererCommand() = default;
    virtual void unexecute(Renderer& renderer) = 0;
    virtual void execute(Renderer& renderer) = 0;
    virtual QString name() const { return name_; }
    virtual void rename(const QString& name) { name_ = name; }
    // Takes the renderer state this command changes, for the undo.
    virtual void save(const Renderer& renderer) = 0;

private:
    QString name_;
};
