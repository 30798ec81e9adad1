#pragma once

#include "THandle.h"

#include <QString>

class VisLibCommand;
using HVisLibCommand = THandle<VisLibCommand>;

// Something a user did to a view, kept for undo and redo. execute must be repeatable: redo calls
// it again, and it saves what it changes anew each time.
class VisLibCommand {
public:
    explicit VisLibCommand(const QString& name);
    VisLibCommand(const VisLibCommand&) = default;
    virtual ~VisLibCommand() = default;
    // The text the history and the Undo and Redo items show.
    virtual QString name() const { return name_; }
    // False when nothing could be done; such a command stays out of the history.
    virtual bool execute() = 0;
    virtual bool unexecute() = 0;
    virtual HVisLibCommand clone() const = 0;
    virtual void rename(const QString& name);

private:
    QString name_;
};
