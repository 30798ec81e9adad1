#ifndef CIFWARD_QCBSWIZARDCONTACTPAGE_H
#define CIFWARD_QCBSWIZARDCONTACTPAGE_H

#include "QcbsWizardPage.h"

// Who to write to about the submission: the block's contact author, or where the block names
// none, the contact kept in the preferences.
class QcbsWizardContactPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardContactPage(QWidget* parent = nullptr);

    void loadFields(const CifDataBlock& block) override;
};

#endif
