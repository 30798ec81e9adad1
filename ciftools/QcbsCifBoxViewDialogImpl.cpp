#include "QcbsCifBoxViewDialogImpl.h"

#include "QcbsCifBoxDataItem.h"
#include "QcbsCifBoxView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

QcbsCifBoxViewDialogImpl::QcbsCifBoxViewDialogImpl(const HCif& cif, QWidget* parent)
    : QDialog(parent), cifBoxView_(new QcbsCifBoxView(this)), lineEdit_(new QLineEdit(this)),
      okButton(new QPushButton(QStringLiteral("OK"), this)),
      cancelButton(new QPushButton(QStringLiteral("Cancel"), this))
{
    setObjectName(QStringLiteral("choose data item"));
    setWindowTitle(QStringLiteral("Choose Data Item"));
    auto* prompt = new QLabel(QStringLiteral("Type a data item name or choose from the list."), this);
    prompt->setBuddy(lineEdit_);
    lineEdit_->setObjectName(QStringLiteral("lineEdit_"));
    lineEdit_->setToolTip(QStringLiteral("The data name, beginning with _"));
    cifBoxView_->setCif(cif);
    okButton->setObjectName(QStringLiteral("okButton"));
    okButton->setDefault(true);
    okButton->setEnabled(false);
    okButton->setToolTip(QStringLiteral("Use this data name"));
    cancelButton->setObjectName(QStringLiteral("cancelButton"));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(okButton);
    buttons->addWidget(cancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prompt);
    layout->addWidget(lineEdit_);
    layout->addWidget(cifBoxView_, 1);
    layout->addLayout(buttons);
    resize(420, 520);
    lineEdit_->setFocus();

    connect(cifBoxView_, qOverload<const QString&>(&QcbsCifBoxView::selectedDataItem), this,
            &QcbsCifBoxViewDialogImpl::setText);
    // Moving through the list with the keys puts each name in the box, as a click would.
    connect(cifBoxView_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (auto* data = dynamic_cast<QcbsCifBoxDataItem*>(item))
            setText(data->name());
    });
    connect(lineEdit_, &QLineEdit::textChanged, this, [this](const QString& typed) {
        okButton->setEnabled(typed.trimmed().startsWith(QLatin1Char('_')));
    });
    connect(okButton, &QPushButton::clicked, this, &QcbsCifBoxViewDialogImpl::slotOK);
    connect(cancelButton, &QPushButton::clicked, this, &QcbsCifBoxViewDialogImpl::slotCancel);
}

QString QcbsCifBoxViewDialogImpl::text() const
{
    return lineEdit_->text().trimmed();
}

void QcbsCifBoxViewDialogImpl::setText(const QString& name)
{
    lineEdit_->setText(name);
}

void QcbsCifBoxViewDialogImpl::slotOK()
{
    if (!okButton->isEnabled())
        return;
    emit insertTextRequest(text());
    accept();
}

void QcbsCifBoxViewDialogImpl::slotCancel()
{
    reject();
}
