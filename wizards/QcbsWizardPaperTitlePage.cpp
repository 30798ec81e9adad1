#include "QcbsWizardPaperTitlePage.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

QcbsWizardPaperTitlePage::QcbsWizardPaperTitlePage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Publication Information...   (page "),
                     QStringLiteral("Enter the title of the paper"), parent)
{
    auto* title = new QPlainTextEdit(this);
    title->setTabChangesFocus(true);
    title->setFixedHeight(title->fontMetrics().lineSpacing() * 5);
    addField(QStringLiteral("Title : "), QStringLiteral("_publ_section_title"), title);
    content()->addStretch();
}
