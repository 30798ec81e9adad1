#include "QcbsFindDialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPointer<QcbsFindDialog>& shared()
{
    static QPointer<QcbsFindDialog> dialog;
    return dialog;
}

} // namespace

QcbsFindDialog* QcbsFindDialog::instance()
{
    if (!shared())
        shared() = new QcbsFindDialog;
    return shared();
}

QcbsFindDialog* QcbsFindDialog::existing()
{
    return shared();
}

QcbsFindDialog::QcbsFindDialog(QWidget* parent)
    : QcbsSearchDialog(QStringLiteral("FindDialog"), QStringLiteral("Find Text"), parent),
      buttonFind_(new QPushButton(QStringLiteral("Find"), this))
{
    buttonFind_->setObjectName(QStringLiteral("buttonFind"));
    buttonFind_->setDefault(true);
    buttonFind_->setToolTip(QStringLiteral("Find the next match (Return)"));
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("buttonClose"));
    close->setAutoDefault(false);
    close->setToolTip(QStringLiteral("Close (Escape)"));

    auto* layout = new QGridLayout(this);
    layout->addWidget(findLabel_, 0, 0);
    layout->addWidget(comboFind_, 0, 1, 1, 2);
    layout->addWidget(direction_, 1, 0, 1, 2);
    layout->addWidget(options_, 1, 2);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(buttonFind_);
    buttons->addWidget(close);
    buttons->addStretch();
    layout->addLayout(buttons, 0, 3, 2, 1);

    connect(buttonFind_, &QPushButton::clicked, this, &QcbsSearchDialog::doFind);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}
