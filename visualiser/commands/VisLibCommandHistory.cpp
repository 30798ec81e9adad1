#include "VisLibCommandHistory.h"

#include "Logger.h"

VisLibCommandHistory::VisLibCommandHistory(int depth, QObject* parent) : QObject(parent), depth_(depth)
{
}

bool VisLibCommandHistory::canUndo() const
{
    return index_ >= 0 && index_ < count();
}

bool VisLibCommandHistory::canRedo() const
{
    return index_ + 1 >= 0 && index_ + 1 < count();
}

void VisLibCommandHistory::add(const HVisLibCommand& command)
{
    if (index_ != count() - 1)
        commands_.erase(commands_.begin() + (index_ + 1), commands_.end());
    commands_.push_back(command);
    if (count() > depth_)
        commands_.pop_front();
    else
        ++index_;
    emitUndoRedo();
}

void VisLibCommandHistory::undo()
{
    if (index_ <= -1)
        return;
    commands_[static_cast<std::size_t>(index_)]->unexecute();
    --index_;
    emitUndoRedo();
}

void VisLibCommandHistory::redo()
{
    if (index_ >= count() - 1)
        return;
    ++index_;
    commands_[static_cast<std::size_t>(index_)]->execute();
    emitUndoRedo();
}

void VisLibCommandHistory::emitUndoRedo()
{
    logDebug(3, "VisLibCommandHistory::emitUndoRedo entered");
    const bool undo = canUndo(), redo = canRedo();
    const QString undo_name = undo ? commands_[static_cast<std::size_t>(index_)]->name() : QString();
    const QString redo_name = redo ? commands_[static_cast<std::size_t>(index_ + 1)]->name() : QString();
    logDebug(3, "VisLibCommandHistory::emitUndoRedo emitting undoRedoChanged");
    emit undoRedoChanged(undo, redo, undo_name, redo_name);
    logDebug(3, "VisLibCommandHistory::emitUndoRedo emitting undoRedoChanged done");
    logDebug(3, "VisLibCommandHistory::emitUndoRedo done");
}
