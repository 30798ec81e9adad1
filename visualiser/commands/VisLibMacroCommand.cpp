#include "VisLibMacroCommand.h"

#include "Logger.h"

bool VisLibMacroCommand::execute()
{
    logDebug(2, "VisLibMacroCommand::execute: %s >>>>", qPrintable(name()));
    for (const HVisLibCommand& command : commands_) {
        logDebug(2, "VisLibMacroCommand::execute: command %s", qPrintable(command->name()));
        if (!command->execute()) {
            logError("VisLibMacroCommand::execute: Could not execute command %s - abandoning execution",
                     qPrintable(command->name()));
            return false;
        }
    }
    return true;
}

bool VisLibMacroCommand::unexecute()
{
    logDebug(2, "VisLibMacroCommand::unexecute: %s >>>>", qPrintable(name()));
    for (auto it = commands_.rbegin(); it != commands_.rend(); ++it) {
        logDebug(2, "VisLibMacroCommand::unexecute: command %s", qPrintable((*it)->name()));
        if (!(*it)->unexecute()) {
            logError(
                "VisLibMacroCommand::unexecute: Could not unexecute command %s - abandonding un-execution",
                qPrintable((*it)->name()));
            return false;
        }
    }
    return true;
}

HVisLibCommand VisLibMacroCommand::clone() const
{
    std::vector<HVisLibCommand> members;
    for (const HVisLibCommand& command : commands_)
        members.push_back(command->clone());
    return HVisLibCommand(new VisLibMacroCommand(name(), members));
}
