#ifndef CIFWARD_QCBSWIZARDINTROPAGE_H
#define CIFWARD_QCBSWIZARDINTROPAGE_H

#include "QcbsWizardPage.h"

class QLineEdit;
class QPushButton;

// The welcome. A wizard started without a block also offers here a CIF to take data from.
class QcbsWizardIntroPage : public QcbsWizardPage {
    Q_OBJECT
public:
    QcbsWizardIntroPage(bool withFileLine, QWidget* parent = nullptr);

    // Null without the file line.
    QLineEdit* fileEdit() const { return fileEdit_; }
    QPushButton* browseButton() const { return browse_; }
    void setFileStatus(const QString& text);

private:
    QLineEdit* fileEdit_ = nullptr;
    QPushButton* browse_ = nullptr;
    QLabel* fileStatus_ = nullptr;
};

#endif
