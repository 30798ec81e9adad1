#ifndef CIFWARD_QCBSLOOPTABLEEDITORIMPL_H
#define CIFWARD_QCBSLOOPTABLEEDITORIMPL_H

#include "Cif.h"

#include <QDialog>
#include <QString>

class QLabel;
class QPushButton;
class QcbsLoopTable;

// The loop editor: one loop of the file in a table, over a private copy, so that nothing in the
// document changes until OK gives the loop back as CIF text; Cancel throws the copy away. Below
// the table stands what it holds and how many of its values fail their check.
class QcbsLoopTableEditorImpl : public QDialog {
    Q_OBJECT
public:
    // `document` is the parsed file, whose blocks the name chooser of "New Column" shows.
    QcbsLoopTableEditorImpl(const HCif& document, const QString& helpDirectory, unsigned lineLimit,
                            QWidget* parent = nullptr);

    // Edits the loop that holds `name` in `block`; true on failure, as the table has it.
    bool setLoop(const QString& name, const HCifDataBlock& block);
    // A new loop, empty until columns are added.
    void newLoop(const HCifDictionary& dictionary);

    QcbsLoopTable* table() const { return loopTable_; }
    QString summary() const;

public slots:
    void newRow();
    void newCol();
    void addCol(const QString& name);
    void deleteRow();
    void deleteCol();
    void insertCell();
    void deleteCell();
    void nextFailingCell();
    void slotOK();
    void slotCancel();

signals:
    // The loop's new text, from its "loop_" on, for the editor.
    void loopUpdated(const QString& text);

private:
    void updateSummary();
    QPushButton* addButton(const char* objectName, const QString& text, const QString& tip,
                           const QKeySequence& key);

    HCif document_;
    unsigned lineLimit_;
    QcbsLoopTable* loopTable_;
    QLabel* summary_;
};

#endif
