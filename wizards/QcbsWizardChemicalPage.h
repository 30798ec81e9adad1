#ifndef CIFWARD_QCBSWIZARDCHEMICALPAGE_H
#define CIFWARD_QCBSWIZARDCHEMICALPAGE_H

#include "QcbsWizardPage.h"

// Names, formulae and source of the compound.
class QcbsWizardChemicalPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardChemicalPage(QWidget* parent = nullptr);
};

#endif
