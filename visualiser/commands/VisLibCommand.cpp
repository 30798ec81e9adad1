#include "VisLibCommand.h"

#include "Logger.h"

VisLibCommand::VisLibCommand(const QString& name) : name_(name)
{
    logDebug(3, "Created command: %s", qPrintable(name));
}

void VisLibCommand::rename(const QString& name)
{
    name_ = name;
    logDebug(3, "Renamed command: %s", qPrintable(name));
}
