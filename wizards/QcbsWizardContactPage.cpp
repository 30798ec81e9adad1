#include "QcbsWizardContactPage.h"

#include "QcbsContactRecord.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

QcbsWizardContactPage::QcbsWizardContactPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Contact Information...   (page "),
                     QStringLiteral("Enter the details of the author to whom correspondence should be sent"),
                     parent)
{
    auto* address = new QPlainTextEdit(this);
    address->setTabChangesFocus(true);
    address->setFixedHeight(address->fontMetrics().lineSpacing() * 5);
    addField(QStringLiteral("Contact author : "), QStringLiteral("_publ_contact_author_name"),
             new QLineEdit(this));
    addField(QStringLiteral("Email address : "), QStringLiteral("_publ_contact_author_email"),
             new QLineEdit(this));
    addField(QStringLiteral("Contact address : "), QStringLiteral("_publ_contact_author_address"), address);
    addField(QStringLiteral("Telephone number : "), QStringLiteral("_publ_contact_author_phone"),
             new QLineEdit(this));
    addField(QStringLiteral("Fax number : "), QStringLiteral("_publ_contact_author_fax"),
             new QLineEdit(this));
    content()->addStretch();
}

void QcbsWizardContactPage::loadFields(const CifDataBlock& block)
{
    QcbsWizardPage::loadFields(block);
    const QcbsContactRecord& kept = contact();
    const QString fallbacks[] = {kept.name, kept.email, kept.address, kept.phone, kept.fax};
    int i = 0;
    for (QcbsWizardField& field : editableFields())
        if (const QString& fallback = fallbacks[i++]; field.text().isEmpty() && field.entry()->isEnabled())
            field.setText(fallback);
}
