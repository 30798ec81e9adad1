#ifndef CIFWARD_QCBSWIZARDFINISHPAGE_H
#define CIFWARD_QCBSWIZARDFINISHPAGE_H

#include "QcbsWizardPage.h"

// The last page: Finish writes the block back into the editor.
class QcbsWizardFinishPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardFinishPage(QWidget* parent = nullptr);
};

#endif
