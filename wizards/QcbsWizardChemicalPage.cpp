#include "QcbsWizardChemicalPage.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

QcbsWizardChemicalPage::QcbsWizardChemicalPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Physical and Chemical Information...   (page "),
                     QStringLiteral("Enter the names and formulae of the compound"), parent)
{
    // Systematic names run over several lines in many files.
    auto* systematic = new QPlainTextEdit(this);
    systematic->setTabChangesFocus(true);
    systematic->setFixedHeight(systematic->fontMetrics().lineSpacing() * 4);
    addField(QStringLiteral("Systematic name:"), QStringLiteral("_chemical_name_systematic"), systematic);
    addField(QStringLiteral("Common name:"), QStringLiteral("_chemical_name_common"), new QLineEdit(this));
    addField(QStringLiteral("Moiety Formula:"), QStringLiteral("_chemical_formula_moiety"),
             new QLineEdit(this));
    addField(QStringLiteral("Sum Formula:"), QStringLiteral("_chemical_formula_sum"), new QLineEdit(this));
    addField(QStringLiteral("Compound source:"), QStringLiteral("_chemical_compound_source"),
             new QLineEdit(this));
    content()->addStretch();
}
