#ifndef CIFWARD_QCBSWIZARDPUBLICATIONPAGE_H
#define CIFWARD_QCBSWIZARDPUBLICATIONPAGE_H

#include "QcbsWizardPage.h"

class QRadioButton;

// Where the structure goes: to a journal, to the NLDC as a private communication, or nowhere
// because it is published already. The choice decides the next page and clears the items of the
// other choices, so that a block never says both "submitted to" and "published in".
class QcbsWizardPublicationPage : public QcbsWizardPage {
    Q_OBJECT
public:
    enum Choice { Submission, PrivateCommunication, Published };

    explicit QcbsWizardPublicationPage(QWidget* parent = nullptr);

    // The pages that each choice leads to.
    void setTargets(int requestedJournal, int paperTitle, int journal);
    Choice choice() const;
    void setChoice(Choice choice);
    QRadioButton* button(Choice choice) const;

    int nextId() const override;
    void loadFields(const CifDataBlock& block) override;
    void storeFields(CifDataBlock& block) override;

private:
    QRadioButton* buttons_[3];
    int targets_[3] = {-1, -1, -1};
};

#endif
