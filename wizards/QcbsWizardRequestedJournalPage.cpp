#include "QcbsWizardRequestedJournalPage.h"

#include "QcbsJournalListBox.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

QcbsWizardRequestedJournalPage::QcbsWizardRequestedJournalPage(QWidget* parent)
    : QcbsWizardPage(
          QStringLiteral("Publication Information...   (page "),
          QStringLiteral("Enter the name of the journal to which this structure will be submitted"), parent),
      journal_(new QLineEdit(this)), list_(new QcbsJournalListBox(this))
{
    addField(QStringLiteral("Requested journal name : "), QStringLiteral("_publ_requested_journal"),
             journal_);
    rows()->addWidget(list_, rows()->rowCount(), 1);
    addField(QStringLiteral("Journal manuscript code (if known) : "),
             QStringLiteral("_nldc_journal_manuscript_code"), new QLineEdit(this));
    list_->attach(journal_);
}
