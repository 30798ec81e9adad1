// The editing routes: the Edit menu, the wizards' entry points, and the roads by which a tool's
// CIF text goes back into the editor over the lines it replaces. The CIF tools and the search
// dialogs open from QcbsMainWindowTools.cpp.

#include "QcbsCifBoxView.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsPrefsDialog.h"
#include "QcbsRichTextEdit.h"

#include <QFile>
#include <QTextBlock>
#include <QTextDocument>

namespace {

bool isBlockLine(const QString& line)
{
    return line.startsWith(QLatin1String("data_"), Qt::CaseInsensitive);
}

// Block names ignore case, and a comment may follow the name on its header line.
bool namesBlock(const QString& line, const QString& name)
{
    return line.simplified().section(QLatin1Char(' '), 0, 0).compare(name, Qt::CaseInsensitive) == 0;
}

bool isNameLine(const QString& line)
{
    return line.trimmed().startsWith(QLatin1Char('_'));
}

bool isLoopKeyword(const QString& line)
{
    return line.trimmed().startsWith(QLatin1String("loop_"), Qt::CaseInsensitive);
}

bool isQuietLine(const QString& line)
{
    const QString trimmed = line.trimmed();
    return trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#'));
}

} // namespace

// --- edit routes ----------------------------------------------------------------------------------

void QcbsMainWindow::editUndo()
{
    editor_->undo();
}
void QcbsMainWindow::editRedo()
{
    editor_->redo();
}
void QcbsMainWindow::editCopy()
{
    editor_->copy();
}
void QcbsMainWindow::editCut()
{
    editor_->cut();
}
void QcbsMainWindow::editPaste()
{
    editor_->paste();
}
void QcbsMainWindow::editInsert()
{
    editor_->insertFile();
}
void QcbsMainWindow::editInsertTemplate()
{
    editor_->insertTemplateFile();
}
void QcbsMainWindow::editSelectall()
{
    editor_->selectAll();
}
void QcbsMainWindow::editZoomin()
{
    editor_->bigger();
}
void QcbsMainWindow::editZoomout()
{
    editor_->smaller();
}

void QcbsMainWindow::editPrefs()
{
    QcbsPrefsDialog dialog(&preferences(), state_->dictionarySettings(), this);
    connect(&dialog, &QcbsPrefsDialog::editorPrefsChanged, this, &QcbsMainWindow::initialiseEditorSettings);
    connect(&dialog, &QcbsPrefsDialog::mainWinPrefsChanged, this, &QcbsMainWindow::initialiseAllInstSettings);
    connect(&dialog, &QcbsPrefsDialog::parserPrefsChanged, this,
            qOverload<>(&QcbsMainWindow::enableAllInstParseTools));
    connect(&dialog, &QcbsPrefsDialog::mandatoryPrefsChanged, this,
            &QcbsMainWindow::loadMandatoryDataItemSettings);
    connect(&dialog, &QcbsPrefsDialog::applyButtonPressed, this, &QcbsMainWindow::saveSettings);
    dialog.exec();
}

void QcbsMainWindow::wizardEd()
{
}
void QcbsMainWindow::hg()
{
    showNotAvailable();
}

int QcbsMainWindow::currentParagraph() const
{
    return editor_->textCursor().blockNumber();
}

void QcbsMainWindow::replaceLines(int first, int last, const QString& text)
{
    QTextDocument* doc = editor_->document();
    QTextCursor cursor(doc->findBlockByNumber(first));
    cursor.beginEditBlock();
    if (last >= first) {
        const QTextBlock end = doc->findBlockByNumber(last);
        if (end.next().isValid())
            cursor.setPosition(end.next().position(), QTextCursor::KeepAnchor);
        else
            cursor.setPosition(end.position() + end.length() - 1, QTextCursor::KeepAnchor);
    }
    QString inserted = text;
    if (!inserted.endsWith(QLatin1Char('\n')))
        inserted += QLatin1Char('\n');
    cursor.insertText(inserted);
    cursor.endEditBlock();
    editor_->setTextCursor(QTextCursor(doc->findBlockByNumber(first)));
}

int QcbsMainWindow::blockStartLine(int paragraph) const
{
    for (QTextBlock block = editor_->document()->findBlockByNumber(paragraph); block.isValid();
         block = block.previous())
        if (isBlockLine(block.text().trimmed()))
            return block.blockNumber();
    return -1;
}

int QcbsMainWindow::blockEndLine(int start) const
{
    QTextBlock block = editor_->document()->findBlockByNumber(start);
    int last = start;
    for (block = block.next(); block.isValid(); block = block.next()) {
        if (isBlockLine(block.text().trimmed()))
            break;
        last = block.blockNumber();
    }
    return last;
}

int QcbsMainWindow::loopStartLine(int paragraph) const
{
    for (QTextBlock block = editor_->document()->findBlockByNumber(paragraph); block.isValid();
         block = block.previous()) {
        if (isLoopKeyword(block.text()))
            return block.blockNumber();
        if (isBlockLine(block.text().trimmed()))
            break;
    }
    return -1;
}

// The loop runs from its "loop_" past its names and its values, to the next name, loop or block
// that follows a value; comments and blank lines at its end stay outside.
int QcbsMainWindow::loopEndLine(int start) const
{
    QTextBlock block = editor_->document()->findBlockByNumber(start);
    int last = start;
    // Names, and even values, may follow "loop_" on its own line.
    bool inNames = true;
    for (const QString& word : block.text().simplified().split(QLatin1Char(' ')).mid(1))
        if (word.startsWith(QLatin1Char('#')))
            break;
        else if (!word.startsWith(QLatin1Char('_')))
            inNames = false;
    block = block.next();
    bool inText = false;
    for (; block.isValid(); block = block.next()) {
        const QString line = block.text();
        if (line.startsWith(QLatin1Char(';'))) {
            inText = !inText;
            inNames = false;
            last = block.blockNumber();
            continue;
        }
        if (inText) {
            last = block.blockNumber();
            continue;
        }
        if (isQuietLine(line))
            continue;
        if (isNameLine(line)) {
            if (!inNames)
                break;
        } else if (isLoopKeyword(line) || isBlockLine(line.trimmed())) {
            break;
        } else {
            inNames = false;
        }
        last = block.blockNumber();
    }
    return last;
}

void QcbsMainWindow::loopUpdate(const QString& text)
{
    const int start = loopStartLine(currentParagraph());
    if (start < 0) {
        loopAdd(text);
        return;
    }
    replaceLines(start, loopEndLine(start), text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::loopAdd(const QString& text)
{
    replaceLines(currentParagraph(), currentParagraph() - 1, text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::blockUpdate(const QString& text)
{
    const int start = blockStartLine(currentParagraph());
    if (start < 0) {
        blockAdd(text);
        return;
    }
    // Comments and blank lines after the block's last item stay: a tool's text leaves out the
    // comment that closes the file, which would otherwise end up inside it.
    int end = blockEndLine(start);
    while (end > start && isQuietLine(editor_->document()->findBlockByNumber(end).text()))
        --end;
    replaceLines(start, end, text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::blockAdd(const QString& text)
{
    editor_->textCursor().insertText(text);
    if (!editor_->parsed())
        reparse();
}

// The whole pair as the writer wrote it (the value dialog's text) replaces the item's name and
// value lines, or joins the end of its block when the block lacks the item.
bool QcbsMainWindow::replaceDataItemPair(const QString& blockName, const QString& item, const QString& pair)
{
    if (!document_)
        return false;
    const auto found = document_->find_block(blockName.toStdString());
    if (found == document_->end() || (*found)->line() < 1)
        return false;
    QTextDocument* doc = editor_->document();
    const HCifDataItem known = (*found)->item(item.toStdString());
    QString text = pair;
    if (!text.endsWith(QLatin1Char('\n')))
        text += QLatin1Char('\n');
    if (!known) {
        const int start = (*found)->line() - 1;
        int last = start;
        for (int line = start + 1; line <= blockEndLine(start); ++line)
            if (!isQuietLine(doc->findBlockByNumber(line).text()))
                last = line;
        QTextCursor cursor(doc->findBlockByNumber(last));
        cursor.movePosition(QTextCursor::EndOfBlock);
        cursor.insertText(QLatin1Char('\n') + text.chopped(1));
        editor_->setTextCursor(QTextCursor(doc->findBlockByNumber(last + 1)));
        reparse();
        return true;
    }
    if (known->line() < 1)
        return false;
    const QTextBlock nameLine = doc->findBlockByNumber(known->line() - 1);
    const QString words = nameLine.text().simplified();
    if (words.section(QLatin1Char(' '), 0, 0).compare(item, Qt::CaseInsensitive) != 0)
        return false;
    // The value stands after the name on its line, or on the next line that is not blank or a
    // comment, where a text field runs on to its closing ';'.
    int last = nameLine.blockNumber();
    const QString rest = words.section(QLatin1Char(' '), 1);
    if (rest.isEmpty() || rest.startsWith(QLatin1Char('#'))) {
        QTextBlock value = nameLine.next();
        while (value.isValid() && isQuietLine(value.text()))
            value = value.next();
        if (value.isValid() && value.text().startsWith(QLatin1Char(';'))) {
            for (QTextBlock end = value.next(); end.isValid(); end = end.next())
                if (end.text().startsWith(QLatin1Char(';'))) {
                    value = end;
                    break;
                }
        }
        if (value.isValid())
            last = value.blockNumber();
    }
    replaceLines(nameLine.blockNumber(), last, text);
    reparse();
    return true;
}

void QcbsMainWindow::dataItemUpdate(const QString& blockName, const QString& item, const QString& value)
{
    const bool wholePair = value.startsWith(item, Qt::CaseInsensitive) &&
                           (value.size() == item.size() || value.at(item.size()).isSpace());
    if (wholePair && replaceDataItemPair(blockName, item, value))
        return;
    QTextDocument* doc = editor_->document();
    QTextBlock block = doc->begin();
    if (!blockName.isEmpty()) {
        while (block.isValid() && !namesBlock(block.text(), blockName))
            block = block.next();
        if (!block.isValid())
            return;
    }
    for (; block.isValid(); block = block.next()) {
        const QString line = block.text().simplified();
        if (!blockName.isEmpty() && isBlockLine(line) && !namesBlock(line, blockName))
            return;
        const QString name = line.section(QLatin1Char(' '), 0, 0);
        if (name.compare(item, Qt::CaseInsensitive) != 0)
            continue;
        QTextCursor cursor(block);
        cursor.beginEditBlock();
        if (line.contains(QLatin1Char(' '))) {
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            cursor.insertText(name + QLatin1Char(' ') + value);
        } else {
            cursor.movePosition(QTextCursor::EndOfBlock);
            cursor.insertText(QLatin1Char('\n') + value);
        }
        cursor.endEditBlock();
        reparse();
        return;
    }
}

void QcbsMainWindow::editorInsertTextHelper(const QString& text)
{
    editor_->textCursor().insertText(text);
}

void QcbsMainWindow::editorJumpToBlockHelper(const QString& block)
{
    if (!document_)
        return;
    const auto found = document_->find_block(block.toStdString());
    if (found == document_->end() || (*found)->line() < 1)
        return;
    editor_->gotoLine((*found)->line(), QString());
    boxView_->showBlock(block);
}

void QcbsMainWindow::editorJumpToItemHelper(const QString& item)
{
    editorJumpToItemHelper(item, -1);
}

// `line`, when known, is where the search starts: the line of the item's block, since a name can
// stand in several blocks.
void QcbsMainWindow::editorJumpToItemHelper(const QString& item, int line)
{
    QTextDocument* doc = editor_->document();
    const QTextBlock start = line > 0 ? doc->findBlockByNumber(line - 1) : doc->begin();
    for (QTextBlock block = start; block.isValid(); block = block.next())
        if (block.text().simplified().section(QLatin1Char(' '), 0, 0).compare(item, Qt::CaseInsensitive) ==
            0) {
            editor_->gotoLine(block.blockNumber() + 1, item);
            return;
        }
}
