// The CIF tools and the search dialogs as the menus open them: the box view, the item help and
// the value dialog, the loop editor, the block merge, and find, replace and go to line. A tool
// works on the last check of the text, made afresh first when the text has changed since; what
// it gives back goes into the text by the editing routes.

#include "QcbsCifBoxView.h"
#include "QcbsCifCombineDialogue.h"
#include "QcbsCifText.h"
#include "QcbsDataItemInfo.h"
#include "QcbsEditDataDialogue.h"
#include "QcbsFindDialog.h"
#include "QcbsGotoLineDialog.h"
#include "QcbsLoopTableEditorImpl.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsReplaceDialog.h"
#include "QcbsRichTextEdit.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QTextBlock>
#include <sstream>

namespace {

// The search dialogs are one each for the process; each opening puts the dialog above the
// window that opened it, on that window's editor.
void showSearchDialog(QcbsSearchDialog* dialog, QcbsMainWindow* window)
{
    if (dialog->parentWidget() != window)
        dialog->setParent(window, dialog->windowFlags());
    dialog->setEditor(window->editor());
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    dialog->findCombo()->setFocus();
    dialog->findCombo()->lineEdit()->selectAll();
}

} // namespace

// --- box view and item help -----------------------------------------------------------------------

void QcbsMainWindow::toggleBoxView()
{
    boxViewVisible_ = !boxViewVisible_;
    boxView_->setVisible(boxViewVisible_);
    if (!boxViewVisible_)
        return;
    // Wide enough for the dictionaries' longer names, the text keeping the rest.
    const int width = editorPage_->width();
    if (boxView_->width() < 340 && width > 700)
        editorPage_->setSizes({340, width - 340});
    loadBoxView();
    boxView_->setFocus();
}

void QcbsMainWindow::loadBoxView()
{
    if (!editor_->parsed())
        reparse();
    if (boxView_->cif() != document_)
        boxView_->setCif(document_);
}

void QcbsMainWindow::dataitemHelp()
{
    dataitemHelp(editor_->currentDataItem());
}

void QcbsMainWindow::dataitemHelp(const QString& name)
{
    if (name.isEmpty()) {
        ask(QMessageBox::Information, QStringLiteral("Data item help"),
            QStringLiteral("No help available. Be sure to place cursor on a line containing a data item."));
        return;
    }
    auto* help =
        new QcbsDataItemInfo(name, state_->activeDictionaries(), state_->documentationDirectory(), this);
    help->show();
}

void QcbsMainWindow::setDataItem(const QString& blockName, const QString& name)
{
    if (!editor_->parsed())
        reparse();
    const auto found = document_ ? document_->find_block(blockName.toStdString()) : Cif::iterator();
    if (!document_ || found == document_->end()) {
        statusBarMessage(QStringLiteral("The block ") + blockName +
                         QStringLiteral(" is not in the file any more"));
        QApplication::beep();
        return;
    }
    auto* dialog = new QcbsEditDataDialogue(*found, name, unsigned(state_->lineLengthLimit), true, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QcbsEditDataDialogue::setDataItemTextRequest, this, &QcbsMainWindow::dataItemUpdate);
    dialog->open();
}

// --- loop editor ----------------------------------------------------------------------------------

QString QcbsMainWindow::loopFirstName(int line) const
{
    QTextBlock block = editor_->document()->findBlockByNumber(line);
    // The names may follow "loop_" on its own line.
    QString text = block.text().trimmed().mid(5);
    for (; block.isValid(); block = block.next(), text = block.text()) {
        const QString first = text.simplified().section(QLatin1Char(' '), 0, 0);
        if (first.startsWith(QLatin1Char('_')))
            return first;
        if (!first.isEmpty() && !first.startsWith(QLatin1Char('#')))
            return QString();
    }
    return QString();
}

void QcbsMainWindow::loopEd()
{
    if (!editor_->parsed())
        reparse();
    const int start = loopStartLine(currentParagraph());
    const QString name = start < 0 ? QString() : loopFirstName(start);
    HCifDataBlock block;
    if (document_ && !name.isEmpty()) {
        const auto found = document_->block_at_line(start + 1);
        if (found != document_->end())
            block = *found;
    }
    auto* loopEditor = new QcbsLoopTableEditorImpl(document_, state_->documentationDirectory(),
                                                   unsigned(state_->lineLengthLimit), this);
    loopEditor->setAttribute(Qt::WA_DeleteOnClose);
    if (loopEditor->setLoop(name, block)) {
        delete loopEditor;
        ask(QMessageBox::Information, QStringLiteral("Edit Loop"),
            QStringLiteral("No loop with values was found at the cursor. Place the cursor on the loop_ line "
                           "of a loop that the check has read, and try again."));
        return;
    }
    connect(loopEditor, &QcbsLoopTableEditorImpl::loopUpdated, this, &QcbsMainWindow::loopUpdate);
    loopEditor->open();
}

void QcbsMainWindow::loopNew()
{
    auto* loopEditor = new QcbsLoopTableEditorImpl(document_, state_->documentationDirectory(),
                                                   unsigned(state_->lineLengthLimit), this);
    loopEditor->setAttribute(Qt::WA_DeleteOnClose);
    loopEditor->newLoop(state_->activeDictionaries());
    connect(loopEditor, &QcbsLoopTableEditorImpl::loopUpdated, this, &QcbsMainWindow::loopAdd);
    loopEditor->open();
}

// --- block merge ----------------------------------------------------------------------------------

void QcbsMainWindow::combine()
{
    const QString path = preferences().templateFilename;
    if (path.isEmpty()) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral("No template file set in preferences"));
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral("Could not open template file \"") + path + QLatin1Char('"'));
        return;
    }
    // The template is read as the editor reads a file, so its values come out in the same encoding.
    std::istringstream text(decodeCifText(file.readAll()).toStdString());
    HCif source(new Cif(state_->activeDictionaries()));
    source->read(text, unsigned(state_->lineLengthLimit));

    if (!editor_->parsed())
        reparse();
    std::size_t target = document_ ? document_->block_count() : 0;
    if (document_) {
        const auto found = document_->block_at_line(currentParagraph() + 1);
        if (found != document_->end())
            target = std::size_t(found - document_->begin());
    }
    auto* dialog =
        new QcbsCifCombineDialogue(document_, target, source, path, unsigned(state_->lineLengthLimit), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QcbsCifCombineDialogue::blockUpdated, this, &QcbsMainWindow::blockUpdate);
    dialog->open();
}

// --- find, replace, go to line --------------------------------------------------------------------

void QcbsMainWindow::editFind()
{
    if (QcbsReplaceDialog* replace = QcbsReplaceDialog::existing())
        replace->close();
    showSearchDialog(QcbsFindDialog::instance(), this);
}

void QcbsMainWindow::editReplace()
{
    if (QcbsFindDialog* find = QcbsFindDialog::existing())
        find->close();
    showSearchDialog(QcbsReplaceDialog::instance(), this);
}

void QcbsMainWindow::findAgain(bool forward)
{
    const QcbsPreferences& prefs = preferences();
    const QString text = prefs.findRecent.value(0);
    if (!text.isEmpty() &&
        QcbsSearchDialog::findIn(editor_, text, prefs.findCheckCase, prefs.findCheckWords, forward, false))
        return;
    editor_->moveCursor(forward ? QTextCursor::End : QTextCursor::Start);
    QApplication::beep();
}

void QcbsMainWindow::editFindNext()
{
    findAgain(true);
}

void QcbsMainWindow::editFindPrevious()
{
    findAgain(false);
}

void QcbsMainWindow::editGotoLine()
{
    auto* dialog = new QcbsGotoLineDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setEditor(editor_);
    dialog->open();
}
