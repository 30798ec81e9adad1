#ifndef CIFWARD_QCBSWIZARDDIFFRACTIONPAGE_H
#define CIFWARD_QCBSWIZARDDIFFRACTIONPAGE_H

#include "QcbsWizardPage.h"

// The radiation and its source. Older files name the source class _diffrn_radiation_source;
// the page shows it when _diffrn_source is absent, and a changed value moves to _diffrn_source,
// so that the block never gives two answers.
class QcbsWizardDiffractionPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardDiffractionPage(QWidget* parent = nullptr);

    void loadFields(const CifDataBlock& block) override;
    void storeFields(CifDataBlock& block) override;

private:
    QcbsWizardField* source_;
};

#endif
