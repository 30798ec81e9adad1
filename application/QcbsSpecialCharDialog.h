#ifndef CIFWARD_QCBSSPECIALCHARDIALOG_H
#define CIFWARD_QCBSSPECIALCHARDIALOG_H

#include <QDialog>

class QcbsSpecialCharBrowser;

// The window of the special characters help: the page of CIF text escapes and a close button.
class QcbsSpecialCharDialog : public QDialog {
    Q_OBJECT
public:
    explicit QcbsSpecialCharDialog(QWidget* parent = nullptr);

private:
    QcbsSpecialCharBrowser* browser_;
};

#endif
