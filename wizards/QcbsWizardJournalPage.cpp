#include "QcbsWizardJournalPage.h"

#include "QcbsJournalListBox.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

QcbsWizardJournalPage::QcbsWizardJournalPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Publication Information...   (page "),
                     QStringLiteral("Enter the reference to the paper in which this structure appears"),
                     parent),
      journal_(new QLineEdit(this)), list_(new QcbsJournalListBox(this))
{
    addField(QStringLiteral("Journal name : "), QStringLiteral("_journal_name_full"), journal_);
    rows()->addWidget(list_, rows()->rowCount(), 1);
    addField(QStringLiteral("First Page : "), QStringLiteral("_journal_page_first"), new QLineEdit(this));
    addField(QStringLiteral("Last Page : "), QStringLiteral("_journal_page_last"), new QLineEdit(this));
    addField(QStringLiteral("Volume : "), QStringLiteral("_journal_volume"), new QLineEdit(this));
    addField(QStringLiteral("Year : "), QStringLiteral("_journal_year"), new QLineEdit(this));
    list_->attach(journal_);
}
