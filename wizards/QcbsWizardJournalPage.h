#ifndef CIFWARD_QCBSWIZARDJOURNALPAGE_H
#define CIFWARD_QCBSWIZARDJOURNALPAGE_H

#include "QcbsWizardPage.h"

class QcbsJournalListBox;
class QLineEdit;

// Where a published structure appeared: journal, pages, volume and year.
class QcbsWizardJournalPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardJournalPage(QWidget* parent = nullptr);

    QLineEdit* journalEdit() const { return journal_; }
    QcbsJournalListBox* journalList() const { return list_; }

private:
    QLineEdit* journal_;
    QcbsJournalListBox* list_;
};

#endif
