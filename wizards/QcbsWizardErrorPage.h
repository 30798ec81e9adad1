#ifndef CIFWARD_QCBSWIZARDERRORPAGE_H
#define CIFWARD_QCBSWIZARDERRORPAGE_H

#include "QcbsWizardPage.h"

class CifErrorList;
class QTreeWidget;

// What the last check found in the block. Errors stop the wizard here: what it writes back
// would be built on a block the reader did not fully understand.
class QcbsWizardErrorPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardErrorPage(QWidget* parent = nullptr);

    void showFindings(const CifErrorList& findings);
    void loadFields(const CifDataBlock& block) override;
    bool isComplete() const override { return errors_ == 0; }
    // Next is off while there are errors, and so is every other way forward.
    bool validatePage() override { return isComplete(); }

    QString status() const;
    QTreeWidget* findingList() const { return list_; }

private:
    QLabel* status_;
    QTreeWidget* list_;
    std::size_t errors_ = 0;
};

#endif
