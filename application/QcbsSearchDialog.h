#ifndef CIFWARD_QCBSSEARCHDIALOG_H
#define CIFWARD_QCBSSEARCHDIALOG_H

#include "QcbsRichTextEdit.h"

#include <QDialog>
#include <QPointer>
#include <QString>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QRadioButton;

// What the find and the replace dialogs share: the text sought with its history, the direction
// and the options, kept in the settings between sessions, and the search itself. A search that
// fails beeps and ticks "Start at Beginning", so that the next press wraps round.
class QcbsSearchDialog : public QDialog {
    Q_OBJECT
public:
    static constexpr int historyLength = 8;

    QcbsRichTextEdit* editor() const { return editor_; }
    QComboBox* findCombo() const { return comboFind_; }

    // Puts `text` at the top of the combo's list, once, keeping the newest entries.
    static void remember(QComboBox* combo, const QString& text);
    // Looks for `text` in `editor` from its cursor (or from the start or end of the text), and
    // selects the match. False, with the cursor where it was, when there is none.
    static bool findIn(QcbsRichTextEdit* editor, const QString& text, bool caseSensitive, bool wholeWords,
                       bool forward, bool fromEnd);

public slots:
    virtual void init();
    virtual void destroy();
    void setEditor(QcbsRichTextEdit* editor);
    void doFind();

protected:
    QcbsSearchDialog(const QString& objectName, const QString& caption, QWidget* parent);

    // The editor searched: the one given, or else the last active main window's.
    QcbsRichTextEdit* targetEditor();
    // Makes the history and the options the process-wide values, which the main window's
    // "find next" and "find previous" read.
    virtual void publish();
    bool search();
    void hideEvent(QHideEvent* event) override;

    QLabel* findLabel_;
    QComboBox* comboFind_;
    QGroupBox* direction_;
    QRadioButton* radioForward_;
    QRadioButton* radioBackward_;
    QGroupBox* options_;
    QCheckBox* checkWords_;
    QCheckBox* checkCase_;
    QCheckBox* checkBegin_;

private:
    QPointer<QcbsRichTextEdit> editor_;
};

#endif
