#ifndef CIFWARD_QCBSDATAWIZARD_H
#define CIFWARD_QCBSDATAWIZARD_H

#include "QcbsWizard.h"

// The Crystal Data Wizard: the compound, the crystal and its measurement, the symmetry and the
// diffraction experiment of one block.
class QcbsDataWizard : public QcbsWizard {
    Q_OBJECT
public:
    QcbsDataWizard(const HCifDictionaryPool& pool, const CifDataBlock* block, const HCifErrorList& findings,
                   QWidget* parent = nullptr);
};

#endif
