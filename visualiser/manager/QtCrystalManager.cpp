#include "QtCrystalManager.h"

#include "GraphicsCrystal.h"
#include "LogAddress.h"
#include "Logger.h"
#include "VisLibActiveCommand.h"
#include "VisLibCommandHistory.h"

#include <algorithm>

QtCrystalManager::QtCrystalManager(QObject* parent)
    : QObject(parent), history_(new VisLibCommandHistory(history_depth, this))
{
    connect(history_, &VisLibCommandHistory::undoRedoChanged, this, &QtCrystalManager::updateUndoRedo);
    updateUndoRedo(false, false, QString(), QString());
}

QtCrystalManager::~QtCrystalManager()
{
    for (const HGraphicsCrystal& crystal : crystals_)
        crystal->disconnect(this);
}

void QtCrystalManager::update(Subject& subject)
{
    logDebug(2, "QtCrystalManager::update GraphicsCrystal changed: %08X", log_address(&subject));
    for (const HGraphicsCrystal& crystal : crystals_)
        if (static_cast<Subject*>(crystal.get()) == &subject)
            emit crystalChanged(crystal);
}

void QtCrystalManager::emitExecuteRendererCommand(HRendererCommand& command)
{
    emit executeRendererCommand(command);
}

void QtCrystalManager::emitUnexecuteRendererCommand(HRendererCommand& command)
{
    emit unexecuteRendererCommand(command);
}

void QtCrystalManager::addGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    if (std::find(crystals_.begin(), crystals_.end(), crystal) != crystals_.end())
        return;
    crystal->set_active(true);
    crystals_.push_back(crystal);
    crystal->connect(this);
    emit graphicsCrystalAdded(crystal);
    emit crystalListChanged();
}

void QtCrystalManager::removeGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    const auto it = std::find(crystals_.begin(), crystals_.end(), crystal);
    if (it == crystals_.end())
        return;
    crystal->disconnect(this);
    crystals_.erase(it);
    emit graphicsCrystalRemoved(crystal);
    emit crystalListChanged();
}

void QtCrystalManager::setGraphicsCrystal(const HGraphicsCrystal& crystal)
{
    clearGraphicsCrystals();
    addGraphicsCrystal(crystal);
}

void QtCrystalManager::clearGraphicsCrystals()
{
    while (!crystals_.empty())
        removeGraphicsCrystal(crystals_.back());
}

void QtCrystalManager::setGraphicsCrystalActive(const HGraphicsCrystal& crystal, bool active)
{
    executeAndLogCommand(HVisLibCommand(new VisLibActiveCommand(this, crystal, active)));
}

void QtCrystalManager::undo()
{
    history_->undo();
}

void QtCrystalManager::redo()
{
    history_->redo();
}

void QtCrystalManager::executeAndLogCommand(const HVisLibCommand& command)
{
    if (command->execute())
        addCommandToHistory(command);
}

void QtCrystalManager::addCommandToHistory(const HVisLibCommand& command)
{
    history_->add(command);
}

void QtCrystalManager::updateUndoRedo(bool canUndo, bool canRedo, const QString& undoName,
                                      const QString& redoName)
{
    undo_text_ = canUndo ? QString("&Undo: %1").arg(undoName) : QString("&Undo: Not Available");
    redo_text_ = canRedo ? QString("&Redo: %1").arg(redoName) : QString("&Redo: Not Available");
    emit undoRedoTextChanged(canUndo, canRedo, undo_text_, redo_text_);
}
