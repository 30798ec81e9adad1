#include "QcbsPublWizard.h"

#include "QcbsWizardAuthorPage.h"
#include "QcbsWizardContactPage.h"
#include "QcbsWizardJournalPage.h"
#include "QcbsWizardPaperTitlePage.h"
#include "QcbsWizardPublicationPage.h"
#include "QcbsWizardRequestedJournalPage.h"

#include <QPushButton>

QcbsPublWizard::QcbsPublWizard(const HCifDictionaryPool& pool, const CifDataBlock* block,
                               const HCifErrorList& findings, const QcbsContactRecord& contact,
                               QWidget* parent)
    : QcbsWizard(pool, block, findings, contact, QStringLiteral("publication_text"), parent),
      authors_(new QcbsWizardAuthorPage)
{
    setWindowTitle(QStringLiteral("Cifward Publication Data Wizard"));
    setImportedCategories({QStringLiteral("publ"), QStringLiteral("journal"), QStringLiteral("nldc")});
    addIntroPage();
    addErrorPage();
    addWizardPage(new QcbsWizardContactPage);
    auto* publication = new QcbsWizardPublicationPage;
    addWizardPage(publication);
    auto* requested = new QcbsWizardRequestedJournalPage;
    const int requestedId = addWizardPage(requested);
    const int journalId = addWizardPage(new QcbsWizardJournalPage);
    const int titleId = addWizardPage(new QcbsWizardPaperTitlePage);
    addWizardPage(authors_);
    addFinishPage();
    publication->setTargets(requestedId, titleId, journalId);
    requested->setNextId(titleId);

    connect(authors_->previousButton(), &QPushButton::clicked, this, &QcbsPublWizard::prevAuthor);
    connect(authors_->nextButton(), &QPushButton::clicked, this, &QcbsPublWizard::nextAuthor);
    connect(authors_->addButton(), &QPushButton::clicked, this, &QcbsPublWizard::addauthor);
    connect(authors_->deleteButton(), &QPushButton::clicked, this, &QcbsPublWizard::delauthor);
}

void QcbsPublWizard::addauthor()
{
    authors_->addAuthor();
}

void QcbsPublWizard::delauthor()
{
    authors_->deleteAuthor();
}

void QcbsPublWizard::nextAuthor()
{
    authors_->nextAuthor();
}

void QcbsPublWizard::prevAuthor()
{
    authors_->previousAuthor();
}
