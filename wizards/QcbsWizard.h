#ifndef CIFWARD_QCBSWIZARD_H
#define CIFWARD_QCBSWIZARD_H

#include "Cif.h"
#include "CifDictionaryPool.h"
#include "QcbsContactRecord.h"

#include <QList>
#include <QStringList>
#include <QWizard>

class QcbsWizardIntroPage;
class QcbsWizardPage;

// The frame of the guided forms. A wizard works on a private copy of one block, so that Cancel
// leaves the document untouched; Finish writes the copy out and hands the text back through
// blockUpdated, for the main window to put in place of the block's lines.
class QcbsWizard : public QWizard {
    Q_OBJECT
public:
    // Without a block the wizard starts one named "data_" + `newBlockName`, and its intro page
    // offers to take the data from a CIF on disk. `findings` are what the last check found in
    // the block.
    QcbsWizard(const HCifDictionaryPool& pool, const CifDataBlock* block, const HCifErrorList& findings,
               const QcbsContactRecord& contact, const QString& newBlockName, QWidget* parent = nullptr);

    // The findings of a document that lie in its block `index`, and those without a line; the
    // first block also takes the lines above it.
    static HCifErrorList blockFindings(const Cif& cif, std::size_t index);

    CifDataBlock& block() const { return *block_; }
    const CifErrorList& findings() const { return *findings_; }
    const QcbsContactRecord& contact() const { return contact_; }
    void setLineLimit(unsigned limit) { lineLimit_ = limit; }
    // Where the item help looks for the installation's extra notes.
    void setHelpDirectory(const QString& directory) { helpDirectory_ = directory; }
    // The working block as the writer gives it.
    QString blockText() const;
    QcbsWizardPage* currentWizardPage() const;

signals:
    void blockUpdated(const QString& text);

public slots:
    void filebrowse();
    void filechanged(const QString& path);
    void dataItemHelp(const QString& name);
    void accept() override;

protected:
    virtual void updatePageTitles();
    virtual void addIntroPage();
    virtual void addErrorPage();
    virtual void addFinishPage();
    int addWizardPage(QcbsWizardPage* page);
    // The categories that a file chosen on the intro page gives to the block.
    void setImportedCategories(const QStringList& categories) { importedCategories_ = categories; }

private:
    void pageChanged(int id);
    QcbsWizardPage* wizardPage(int id) const;
    bool imported(const std::string& name) const;

    HCif cif_;
    HCifDataBlock block_;
    HCifDictionaryPool pool_;

    HCifErrorList findings_;
    QcbsContactRecord contact_;
    bool withoutBlock_;
    unsigned lineLimit_ = Cif::default_line_limit;
    int shownId_ = -1;
    QcbsWizardIntroPage* intro_ = nullptr;
    QStringList importedCategories_;
    QString helpDirectory_;
};

#endif
