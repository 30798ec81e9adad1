#include "QcbsDataWizard.h"

#include "QcbsWizardChemicalPage.h"
#include "QcbsWizardDiffractionPage.h"
#include "QcbsWizardExperimentalPage.h"
#include "QcbsWizardSpaceGroupPage.h"

QcbsDataWizard::QcbsDataWizard(const HCifDictionaryPool& pool, const CifDataBlock* block,
                               const HCifErrorList& findings, QWidget* parent)
    : QcbsWizard(pool, block, findings, {}, QStringLiteral("crystal_data"), parent)
{
    setWindowTitle(QStringLiteral("Cifward Chemical and Crystal Data Wizard"));
    addIntroPage();
    addErrorPage();
    addWizardPage(new QcbsWizardChemicalPage);
    addWizardPage(new QcbsWizardExperimentalPage);
    addWizardPage(new QcbsWizardSpaceGroupPage);
    addWizardPage(new QcbsWizardDiffractionPage);
    addFinishPage();
}
