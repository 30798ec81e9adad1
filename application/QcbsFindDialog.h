#ifndef CIFWARD_QCBSFINDDIALOG_H
#define CIFWARD_QCBSFINDDIALOG_H

#include "QcbsSearchDialog.h"

class QPushButton;

// "Find Text": one for the whole process, made on first use, acting on the editor of the window
// that opened it last.
class QcbsFindDialog : public QcbsSearchDialog {
    Q_OBJECT
public:
    // The process's find dialog, made on the first call.
    static QcbsFindDialog* instance();
    // The dialog if it has been made, or null.
    static QcbsFindDialog* existing();

private:
    explicit QcbsFindDialog(QWidget* parent = nullptr);

    QPushButton* buttonFind_;
};

#endif
