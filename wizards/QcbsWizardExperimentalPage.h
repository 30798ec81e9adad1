#ifndef CIFWARD_QCBSWIZARDEXPERIMENTALPAGE_H
#define CIFWARD_QCBSWIZARDEXPERIMENTALPAGE_H

#include "QcbsWizardPage.h"

// The crystal and the conditions it was measured under.
class QcbsWizardExperimentalPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardExperimentalPage(QWidget* parent = nullptr);
};

#endif
