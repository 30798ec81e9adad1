#include "QcbsWizardIntroPage.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

QcbsWizardIntroPage::QcbsWizardIntroPage(bool withFileLine, QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Welcome   (page "), {}, parent)
{
    auto* welcome =
        new QLabel(QStringLiteral("Welcome to the Cifward data wizard!\n\n") +
                       QStringLiteral("The wizard will guide you through the steps required to\n") +
                       QStringLiteral("ensure that this CIF block includes the correct information.\n\n") +
                       QStringLiteral("Click 'Next' to continue."),
                   this);
    content()->insertWidget(0, welcome);
    if (withFileLine) {
        fileEdit_ = new QLineEdit(this);
        browse_ = new QPushButton(QStringLiteral("Browse..."), this);
        fileStatus_ = new QLabel(this);
        fileStatus_->setWordWrap(true);
        rows()->addWidget(new QLabel(QStringLiteral("Filename :"), this), 0, 0);
        rows()->addWidget(fileEdit_, 0, 1);
        rows()->addWidget(browse_, 0, 2);
        rows()->addWidget(fileStatus_, 1, 1, 1, 2);
    }
    content()->addStretch();
}

void QcbsWizardIntroPage::setFileStatus(const QString& text)
{
    if (fileStatus_)
        fileStatus_->setText(text);
}
