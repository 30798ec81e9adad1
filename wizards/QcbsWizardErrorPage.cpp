#include "QcbsWizardErrorPage.h"

#include "CifErrorList.h"
#include "CifMessageTable.h"
#include "QcbsWizard.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
QString plural(std::size_t n)
{
    return n == 1 ? QString() : QStringLiteral("s");
}
} // namespace

QcbsWizardErrorPage::QcbsWizardErrorPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("CIF syntax checking...   (page "), {}, parent),
      status_(new QLabel(this)), list_(new QTreeWidget(this))
{
    status_->setWordWrap(true);
    list_->setHeaderLabels({QStringLiteral("Line"), QStringLiteral("Level"), QStringLiteral("Message")});
    list_->setRootIsDecorated(false);
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    content()->addWidget(status_);
    content()->addWidget(list_, 1);
}

void QcbsWizardErrorPage::loadFields(const CifDataBlock&)
{
    if (frame())
        showFindings(frame()->findings());
}

void QcbsWizardErrorPage::showFindings(const CifErrorList& findings)
{
    status_->setText(QStringLiteral("Processing CIF..."));
    list_->clear();
    errors_ = findings.count_of_severity(CifErrorSeverity);
    const std::size_t warnings = findings.count_of_severity(CifWarning);
    QString outcome;
    if (findings.is_empty() || (errors_ == 0 && warnings == 0))
        outcome = QStringLiteral("Cif processed with no warnings or errors.");
    else if (errors_ > 0)
        outcome = QStringLiteral("Sorry, the wizard cannot continue whilst there are errors.");
    else
        outcome = QStringLiteral(
            "It is strongly recommended that you fix syntax warnings before using the wizard.");
    status_->setText(outcome + QStringLiteral("\nCIF processed with ") + QString::number(warnings) +
                     QStringLiteral(" warning") + plural(warnings) + QStringLiteral(" and ") +
                     QString::number(errors_) + QStringLiteral(" error") + plural(errors_));
    for (const CifError& finding : findings)
        new QTreeWidgetItem(list_, {finding.line < 0 ? QString() : QString::number(finding.line),
                                    QString::fromStdString(finding.severity_text()),
                                    QString::fromStdString(finding.message())});
    list_->setVisible(!findings.is_empty());
    emit completeChanged();
}

QString QcbsWizardErrorPage::status() const
{
    return status_->text();
}
