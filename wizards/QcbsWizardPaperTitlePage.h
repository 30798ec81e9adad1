#ifndef CIFWARD_QCBSWIZARDPAPERTITLEPAGE_H
#define CIFWARD_QCBSWIZARDPAPERTITLEPAGE_H

#include "QcbsWizardPage.h"

// The title of the paper that describes the structure.
class QcbsWizardPaperTitlePage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardPaperTitlePage(QWidget* parent = nullptr);
};

#endif
