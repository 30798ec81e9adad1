#include "QcbsWizardPublicationPage.h"

#include "CifDataBlock.h"

#include <QButtonGroup>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
const QString privateCommunication = QStringLiteral("Private Communication");
const char* const requestedJournal = "_publ_requested_journal";

bool isPrivateCommunication(const CifDataBlock& block)
{
    return QcbsWizardField::value(block, QString::fromLatin1(requestedJournal))
               .compare(privateCommunication, Qt::CaseInsensitive) == 0;
}
} // namespace

QcbsWizardPublicationPage::QcbsWizardPublicationPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Publication Information...   (page "), {}, parent)
{
    content()->addWidget(new QLabel(QStringLiteral("This structure..."), this));
    buttons_[Submission] =
        new QRadioButton(QStringLiteral("... is being submitted to a journal for publication."), this);
    buttons_[PrivateCommunication] = new QRadioButton(
        QStringLiteral("...is being submitted to the NLDC as a Private Communication."), this);
    buttons_[Published] = new QRadioButton(QStringLiteral("...has already been published."), this);
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 3; ++i) {
        group->addButton(buttons_[i], i);
        content()->addWidget(buttons_[i]);
    }
    content()->addStretch();
    buttons_[Submission]->setChecked(true);
    connect(group, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            emit pathChanged();
    });
}

void QcbsWizardPublicationPage::setTargets(int requestedJournalPage, int paperTitlePage, int journalPage)
{
    targets_[Submission] = requestedJournalPage;
    targets_[PrivateCommunication] = paperTitlePage;
    targets_[Published] = journalPage;
}

QcbsWizardPublicationPage::Choice QcbsWizardPublicationPage::choice() const
{
    for (int i = 0; i < 3; ++i)
        if (buttons_[i]->isChecked())
            return static_cast<Choice>(i);
    return Submission;
}

void QcbsWizardPublicationPage::setChoice(Choice choice)
{
    buttons_[choice]->setChecked(true);
}

QRadioButton* QcbsWizardPublicationPage::button(Choice choice) const
{
    return buttons_[choice];
}

int QcbsWizardPublicationPage::nextId() const
{
    return targets_[choice()];
}

void QcbsWizardPublicationPage::loadFields(const CifDataBlock& block)
{
    // A journal name of "?" is a template's blank, not a publication.
    if (!QcbsWizardField::value(block, QStringLiteral("_journal_name_full")).isEmpty())
        setChoice(Published);
    else if (isPrivateCommunication(block))
        setChoice(PrivateCommunication);
    else
        setChoice(Submission);
}

void QcbsWizardPublicationPage::storeFields(CifDataBlock& block)
{
    const Choice chosen = choice();
    if (chosen == Published) {
        for (const char* name : {requestedJournal, "_nldc_journal_manuscript_code"})
            block.remove_item(name);
        return;
    }
    // A structure not yet published has no journal reference.
    for (const char* name : {"_journal_name_full", "_journal_page_first", "_journal_page_last",
                             "_journal_volume", "_journal_year", "_journal_coden_nldc"})
        block.remove_item(name);
    if (chosen == PrivateCommunication)
        QcbsWizardField::setValue(block, QString::fromLatin1(requestedJournal), privateCommunication);
    else if (isPrivateCommunication(block))
        block.remove_item(requestedJournal);
}
