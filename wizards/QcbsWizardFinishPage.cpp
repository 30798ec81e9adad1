#include "QcbsWizardFinishPage.h"

#include <QLabel>
#include <QVBoxLayout>

QcbsWizardFinishPage::QcbsWizardFinishPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Apply changes to CIF...   (page "), {}, parent)
{
    content()->insertWidget(0, new QLabel(QStringLiteral("Click 'Finish' to apply changes to cif, \n") +
                                              QStringLiteral("'Cancel' to abandon changes, \n") +
                                              QStringLiteral("or 'Back' to review data."),
                                          this));
    content()->addStretch();
    setFinalPage(true);
}
