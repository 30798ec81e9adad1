#ifndef CIFWARD_QCBSGOTOLINEDIALOG_H
#define CIFWARD_QCBSGOTOLINEDIALOG_H

#include "QcbsRichTextEdit.h"

#include <QDialog>
#include <QPointer>

class QLineEdit;

// Asks for a line number and moves the editor's cursor there; a number outside the text beeps.
class QcbsGotoLineDialog : public QDialog {
    Q_OBJECT
public:
    explicit QcbsGotoLineDialog(QWidget* parent = nullptr);

    QLineEdit* entry() const { return entry_; }

public slots:
    void setEditor(QcbsRichTextEdit* editor);
    void doIt();

private:
    QLineEdit* entry_;
    QPointer<QcbsRichTextEdit> editor_;
};

#endif
