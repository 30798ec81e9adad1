#ifndef CIFWARD_QCBSWIZARDREQUESTEDJOURNALPAGE_H
#define CIFWARD_QCBSWIZARDREQUESTEDJOURNALPAGE_H

#include "QcbsWizardPage.h"

class QcbsJournalListBox;
class QLineEdit;

// The journal a structure is submitted to, chosen from the journal list or typed.
class QcbsWizardRequestedJournalPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardRequestedJournalPage(QWidget* parent = nullptr);

    QLineEdit* journalEdit() const { return journal_; }
    QcbsJournalListBox* journalList() const { return list_; }

private:
    QLineEdit* journal_;
    QcbsJournalListBox* list_;
};

#endif
