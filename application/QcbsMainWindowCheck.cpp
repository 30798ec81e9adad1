// Checking the text: the parse behind every check, the report of its findings, and the block
// list that each check rebuilds.

#include "QcbsCifBoxView.h"
#include "QcbsErrorReport.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QApplication>
#include <QComboBox>
#include <QTabWidget>
#include <sstream>

namespace {

const QString noBlocks = QStringLiteral("Blocks:  none");
// A block of this name, when a file names it so itself, is not counted as one of the file's.
const char* const hiddenBlockName = "data_added_by_ciphward";

} // namespace

// --- checking -----------------------------------------------------------------------------------

HCif QcbsMainWindow::parse(const std::string& text, bool report)
{
    HCif cif(new Cif(state_->activeDictionaries()));
    std::istringstream stream(text);
    cif->read(stream, static_cast<unsigned>(state_->lineLengthLimit));
    if (preferences().checkMandatoryItems &&
        !(state_->mandatoryCrystalItems.empty() && state_->mandatoryPublicationItems.empty()))
        cif->check_mandatory(state_->mandatoryPublicationItems, state_->mandatoryCrystalItems);
    if (report)
        reportErrors(*cif);
    updateBlockCombo(cif.get());
    boxView_->setCif(cif);
    return cif;
}

HCif QcbsMainWindow::parseFile(const QString& path, bool report)
{
    Q_UNUSED(path);
    // The editor holds the file's lines as read, so parsing them is parsing the file.
    return parse(editor_->toPlainText().toStdString(), report);
}

HCif QcbsMainWindow::parseText(const QString& text, bool report)
{
    HCif cif = parse(text.toStdString(), report);
    editor_->setParsed(true);
    enableTools(tabs_->currentWidget());
    return cif;
}

void QcbsMainWindow::reportErrors(const Cif& cif)
{
    QcbsErrorReport(errorList_, outputPane_, editor_).report(cif, preferences().maxConsecError);
    // A finding's line is only trusted while the text keeps the line count it was checked with.
    editor_->setLinesAtCheck(editor_->document()->blockCount());
}

void QcbsMainWindow::reparse()
{
    if (fileName_.isEmpty())
        return;
    statusBarMessage(QStringLiteral("Parsing CIF..."));
    const QString text = editor_->toPlainText();
    if (text.isEmpty())
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    writeToOutputPane(QStringLiteral("<p> </p>"));
    writeToOutputPane(QStringLiteral("Checking CIF ..."));
    document_ = parseText(text, true);
    QApplication::restoreOverrideCursor();
    statusBarMessage(QStringLiteral("Ready"));
}

// --- the block combo ------------------------------------------------------------------------------

void QcbsMainWindow::updateBlockCombo(const Cif* cif)
{
    blockCombo_->clear();
    const std::size_t count = cif ? cif->block_count() : 0;
    if (count == 0 || (count == 1 && cif->block(0).name() == hiddenBlockName)) {
        blockCombo_->addItem(noBlocks);
        blockCombo_->setEnabled(false);
        return;
    }
    const bool firstHidden = cif->block(0).name() == hiddenBlockName;
    blockCombo_->addItem(QStringLiteral("Blocks:   ") + QString::number(count - (firstHidden ? 1 : 0)));
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& name = cif->block(i).name();
        blockCombo_->addItem(i == 0 && firstHidden ? QString() : QString::fromStdString(name));
    }
    blockCombo_->setEnabled(true);
}

void QcbsMainWindow::blockComboSelected(int index)
{
    if (index < 0) {
        QApplication::beep();
        return;
    }
    if (index == 0 || !document_ || std::size_t(index - 1) >= document_->block_count())
        return;
    if (tabs_->currentWidget() == editorPage_)
        editorJumpToBlockHelper(QString::fromStdString(document_->block(std::size_t(index - 1)).name()));
}
