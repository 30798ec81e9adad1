#include "QcbsWizardPage.h"

#include "QcbsDataItemHelpButton.h"
#include "QcbsWizard.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

QcbsWizardPage::QcbsWizardPage(const QString& titleStem, const QString& heading, QWidget* parent)
    : QWizardPage(parent), titleStem_(titleStem), content_(new QVBoxLayout(this)), rows_(new QGridLayout)
{
    setTitle(titleStem);
    if (!heading.isEmpty()) {
        auto* head = new QLabel(heading, this);
        head->setWordWrap(true);
        QFont bold = head->font();
        bold.setBold(true);
        head->setFont(bold);
        content_->addWidget(head);
        content_->addSpacing(8);
    }
    content_->addLayout(rows_);
    rows_->setColumnStretch(1, 1);
}

QcbsWizard* QcbsWizardPage::frame() const
{
    return qobject_cast<QcbsWizard*>(wizard());
}

const QcbsContactRecord& QcbsWizardPage::contact() const
{
    static const QcbsContactRecord none;
    return frame() ? frame()->contact() : none;
}

void QcbsWizardPage::setPosition(int position, int count)
{
    setTitle(titleStem_ + QString::number(position) + QStringLiteral(" of ") + QString::number(count) +
             QLatin1Char(')'));
}

void QcbsWizardPage::loadFields(const CifDataBlock& block)
{
    for (QcbsWizardField& field : fields_)
        field.load(block);
}

void QcbsWizardPage::storeFields(CifDataBlock& block)
{
    for (const QcbsWizardField& field : fields_)
        field.store(block);
}

QWidget* QcbsWizardPage::entry(const QString& dataName) const
{
    for (const QcbsWizardField& field : fields_)
        if (field.dataName().compare(dataName, Qt::CaseInsensitive) == 0)
            return field.entry();
    return nullptr;
}

QcbsWizardField& QcbsWizardPage::addField(const QString& label, const QString& dataName, QWidget* entry)
{
    addRow(label, dataName, entry);
    fields_.emplace_back(dataName, entry);
    return fields_.back();
}

void QcbsWizardPage::addRow(const QString& label, const QString& dataName, QWidget* entry)
{
    const int row = rows_->rowCount();
    auto* text = new QLabel(label, this);
    text->setBuddy(entry);
    auto* help = new QcbsDataItemHelpButton(dataName, this);
    rows_->addWidget(text, row, 0, Qt::AlignLeft | Qt::AlignTop);
    rows_->addWidget(entry, row, 1);
    rows_->addWidget(help, row, 2, Qt::AlignTop);
    connect(help, &QcbsDataItemHelpButton::dataItemHelpRequested, this,
            &QcbsWizardPage::dataItemHelpRequested);
}
