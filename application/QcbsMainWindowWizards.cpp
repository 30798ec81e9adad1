// The two wizards: each works on a copy of the block at the cursor, and on Finish its text comes
// back over the block's lines (or, for a publication block made afresh, at the cursor).

#include "QcbsDataWizard.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsPublWizard.h"
#include "QcbsRichTextEdit.h"

#include <QTextCursor>

const CifDataBlock* QcbsMainWindow::wizardBlock(HCifErrorList& findings)
{
    if (!editor_->parsed())
        reparse();
    editor_->ensureCursorVisible();
    if (!document_)
        return nullptr;
    const auto block = document_->block_at_line(currentParagraph() + 1);
    if (block == document_->end())
        return nullptr;
    findings = QcbsWizard::blockFindings(*document_, static_cast<std::size_t>(block - document_->begin()));
    return block->get();
}

void QcbsMainWindow::crystalWizard()
{
    HCifErrorList findings;
    const CifDataBlock* block = wizardBlock(findings);
    if (!block) {
        ask(QMessageBox::Information, QStringLiteral("Crystal Wizard"),
            QStringLiteral(
                "Place the cursor in the data block that the Crystal Data Wizard should complete."));
        return;
    }
    QcbsDataWizard wizard(state_->activeDictionaries(), block, findings, this);
    wizard.setLineLimit(state_->lineLengthLimit);
    wizard.setHelpDirectory(state_->documentationDirectory());
    connect(&wizard, &QcbsWizard::blockUpdated, this,
            qOverload<const QString&>(&QcbsMainWindow::blockUpdate));
    wizard.exec();
}

void QcbsMainWindow::publicationWizard()
{
    HCifErrorList findings;
    const CifDataBlock* block = wizardBlock(findings);
    const QcbsPreferences& prefs = preferences();
    QcbsPublWizard wizard(
        state_->activeDictionaries(), block, findings,
        {prefs.contactName, prefs.contactAddress, prefs.contactPhone, prefs.contactFax, prefs.contactEmail},
        this);
    wizard.setLineLimit(state_->lineLengthLimit);
    wizard.setHelpDirectory(state_->documentationDirectory());
    if (block) {
        connect(&wizard, &QcbsWizard::blockUpdated, this,
                qOverload<const QString&>(&QcbsMainWindow::blockUpdate));
    } else {
        // The new block goes in whole lines, ahead of whatever the cursor's line holds.
        connect(&wizard, &QcbsWizard::blockUpdated, this, [this](const QString& text) {
            QTextCursor cursor = editor_->textCursor();
            cursor.movePosition(QTextCursor::StartOfBlock);
            editor_->setTextCursor(cursor);
            blockAdd(text);
        });
    }
    wizard.exec();
}
