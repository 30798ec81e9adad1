#ifndef CIFWARD_QCBSPUBLWIZARD_H
#define CIFWARD_QCBSPUBLWIZARD_H

#include "QcbsWizard.h"

class QcbsWizardAuthorPage;

// The Publication Data Wizard: who submits the structure, where it is or will be published,
// the paper's title and its authors.
class QcbsPublWizard : public QcbsWizard {
    Q_OBJECT
public:
    // Without a block the wizard makes "data_publication_text".
    QcbsPublWizard(const HCifDictionaryPool& pool, const CifDataBlock* block, const HCifErrorList& findings,
                   const QcbsContactRecord& contact, QWidget* parent = nullptr);

public slots:
    void addauthor();
    void delauthor();
    void nextAuthor();
    void prevAuthor();

private:
    QcbsWizardAuthorPage* authors_;
};

#endif
