#pragma once

#include "VisLibCommand.h"

#include <QObject>
#include <deque>

// The commands done on a view, for undo and redo, up to a depth: beyond it the oldest goes.
// A new command drops whatever had been undone.
class VisLibCommandHistory : public QObject {
    Q_OBJECT

public:
    explicit VisLibCommandHistory(int depth, QObject* parent = nullptr);

    int depth() const { return depth_; }
    int count() const { return static_cast<int>(commands_.size()); }
    // The command undo would take back, or -1 when there is none.
    int index() const { return index_; }
    const HVisLibCommand& command(int i) const { return commands_.at(static_cast<std::size_t>(i)); }
    bool canUndo() const;
    bool canRedo() const;

public slots:
    void add(const HVisLibCommand& command);
    void undo();
    void redo();

signals:
    // The names are empty where nothing can be done.
    void undoRedoChanged(bool canUndo, bool canRedo, const QString& undoName, const QString& redoName);

private:
    void emitUndoRedo();

    std::deque<HVisLibCommand> commands_;
    int index_ = -1;
    int depth_;
};
