#pragma once

#include "GraphicsCrystal.h"
#include "Observer.h"
#include "RendererCommand.h"
#include "VisLibCommand.h"

#include <QObject>
#include <QString>
#include <vector>

class VisLibCommandHistory;

// The centre of a view: its crystals, each active or not, and the history of the commands done
// on them. Every change a user makes is a command passed to executeAndLogCommand; the crystals
// notify the manager, which tells the view through crystalChanged. Changes of the camera reach
// the view as renderer commands through executeRendererCommand and unexecuteRendererCommand.
class QtCrystalManager : public QObject, public Observer {
    Q_OBJECT

public:
    static constexpr int history_depth = 40;

    explicit QtCrystalManager(QObject* parent = nullptr);
    ~QtCrystalManager() override;

    const std::vector<HGraphicsCrystal>& graphicsCrystals() const { return crystals_; }
    VisLibCommandHistory& history() const { return *history_; }
    // "&Undo: " and the name of the command an undo would take back, or "&Undo: Not
    // Available"; likewise "&Redo: ".
    const QString& undoText() const { return undo_text_; }
    const QString& redoText() const { return redo_text_; }

    // A crystal told the manager it changed.
    void update(Subject& subject) override;

    void emitExecuteRendererCommand(HRendererCommand& command);
    void emitUnexecuteRendererCommand(HRendererCommand& command);

public slots:
    // A new crystal is active. Adding and clearing crystals are not undoable.
    void addGraphicsCrystal(const HGraphicsCrystal& crystal);
    void removeGraphicsCrystal(const HGraphicsCrystal& crystal);
    void setGraphicsCrystal(const HGraphicsCrystal& crystal);
    void clearGraphicsCrystals();
    void setGraphicsCrystalActive(const HGraphicsCrystal& crystal, bool active);

    void undo();
    void redo();
    // Runs the command and, when it did something, keeps it for undo.
    void executeAndLogCommand(const HVisLibCommand& command);
    // Keeps a command that has already been done, such as a drag of the view.
    void addCommandToHistory(const HVisLibCommand& command);
    void updateUndoRedo(bool canUndo, bool canRedo, const QString& undoName, const QString& redoName);

signals:
    void crystalListChanged();
    void crystalChanged(const HGraphicsCrystal& crystal);
    void graphicsCrystalAdded(const HGraphicsCrystal& crystal);
    void graphicsCrystalRemoved(const HGraphicsCrystal& crystal);
    void executeRendererCommand(HRendererCommand& command);
    void unexecuteRendererCommand(HRendererCommand& command);
    void activeStatusChanged(const HGraphicsCrystal& crystal);
    void undoRedoTextChanged(bool canUndo, bool canRedo, const QString& undoText, const QString& redoText);

private:
    std::vector<HGraphicsCrystal> crystals_;
    VisLibCommandHistory* history_;
    QString undo_text_;
    QString redo_text_;
};
