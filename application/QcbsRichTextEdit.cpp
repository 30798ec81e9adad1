#include "QcbsRichTextEdit.h"

#include "QcbsCifText.h"
#include "QcbsStyleStore.h"
#include "QcbsSyntaxHighlighter_CIF.h"
#include "SpecialCharacters.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace {

QString& templatePath()
{
    static QString path;
    return path;
}

constexpr char16_t kAngstrom = 0xC5;
constexpr char16_t kDegree = 0xB0;

} // namespace

QcbsRichTextEdit::QcbsRichTextEdit(QWidget* parent, bool applyStyles) : QPlainTextEdit(parent)
{
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setWordWrapMode(QTextOption::NoWrap);
    highlighter_ = new QcbsSyntaxHighlighter_CIF(document());
    normalFont_ = QApplication::font();
    if (applyStyles)
        processStyles();
    else
        setBaseFont(normalFont_);

    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &QcbsRichTextEdit::cursorPositionHasChanged);
    connect(this, &QPlainTextEdit::selectionChanged, this, &QcbsRichTextEdit::selectionHasChanged);
    connect(this, &QPlainTextEdit::textChanged, this, &QcbsRichTextEdit::textHasChanged);
}

QcbsRichTextEdit::~QcbsRichTextEdit() = default;

void QcbsRichTextEdit::setText(const QString& text)
{
    // The highlighter colours the lines before the document lays them out, so the text shows in
    // its colours with no second layout.
    setPlainText(text);
    document()->setModified(false);
}

void QcbsRichTextEdit::setReadOnlyMenu(bool readOnlyMenu)
{
    readOnlyMenu_ = readOnlyMenu;
    setReadOnly(readOnlyMenu);
}

QColor QcbsRichTextEdit::markColor(MarkKind kind)
{
    return kind == ErrorMark ? QColor(204, 232, 195) : QColor(Qt::yellow);
}

QString QcbsRichTextEdit::templateFile()
{
    return templatePath();
}

void QcbsRichTextEdit::setTemplateFile(const QString& path)
{
    templatePath() = path;
}

// --- marks -------------------------------------------------------------------------------------

void QcbsRichTextEdit::setMark(MarkKind kind, int paragraph)
{
    errorLine_[kind - 1] = paragraph;
    showMarks();
}

void QcbsRichTextEdit::clearMarks()
{
    if (errorLine_[0] < 0 && errorLine_[1] < 0)
        return;
    errorLine_[0] = errorLine_[1] = -1;
    showMarks();
}

void QcbsRichTextEdit::showMarks()
{
    QList<QTextEdit::ExtraSelection> selections;
    for (MarkKind kind : {ErrorMark, GotoMark}) {
        const QTextBlock block = document()->findBlockByNumber(errorLine_[kind - 1]);
        if (errorLine_[kind - 1] < 0 || !block.isValid())
            continue;
        QTextEdit::ExtraSelection selection;
        selection.cursor = QTextCursor(block);
        selection.format.setBackground(markColor(kind));
        selection.format.setProperty(QTextFormat::FullWidthSelection, true);
        selections.append(selection);
    }
    setExtraSelections(selections);
}

void QcbsRichTextEdit::setErrorHighlighting(int line, int column)
{
    setErrorHighlighting(line, column, false);
}

void QcbsRichTextEdit::setErrorHighlighting(int line, int column, bool clearFirst)
{
    if (clearFirst)
        clearMarks();
    errorLine_[ErrorMark - 1] = -1;
    showMarks();
    if (document()->blockCount() != linesAtCheck_) {
        QApplication::beep();
        emit statusBarMessageRequest(QStringLiteral("(error highlighting disabled until after next check)"));
        return;
    }
    const QTextBlock block = document()->findBlockByNumber(line - 1);
    if (!block.isValid()) {
        QApplication::beep();
        return;
    }
    if (column > 0)
        --column;
    QTextCursor cursor(block);
    cursor.setPosition(block.position() + std::min(column, block.length() - 1));
    setTextCursor(cursor);
    setMark(ErrorMark, block.blockNumber());
    ensureCursorVisible();
}

void QcbsRichTextEdit::clearErrorHighlighting()
{
    errorLine_[0] = errorLine_[1] = -1;
    showMarks();
}

void QcbsRichTextEdit::gotoLine(int line, const QString& text)
{
    gotoLine(line, text, true);
}

void QcbsRichTextEdit::gotoLine(int line, const QString& text, bool clearMarks)
{
    if (line < 1 || line > document()->blockCount()) {
        QApplication::beep();
        return;
    }
    if (clearMarks) {
        QTextCursor plain = textCursor();
        plain.clearSelection();
        setTextCursor(plain);
        this->clearMarks();
    }
    // The whole line selected, so that all of it shows and the user sees where they are.
    QTextCursor cursor(document()->findBlockByNumber(line - 1));
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    setMark(GotoMark, line - 1);
    ensureCursorVisible();
    if (!text.isEmpty())
        emit statusBarMessageRequest(text);
}

void QcbsRichTextEdit::cursorPositionHasChanged()
{
    const int paragraph = textCursor().blockNumber();
    if (paragraph != lastCursorParagraph_) {
        lastCursorParagraph_ = paragraph;
        emit cursorLineChanged(paragraph);
    }
    const bool marked = errorLine_[0] >= 0 || errorLine_[1] >= 0;
    if (marked && paragraph != errorLine_[0] && paragraph != errorLine_[1])
        clearMarks();
}

void QcbsRichTextEdit::selectionHasChanged()
{
    if (textCursor().hasSelection())
        clearMarks();
}

void QcbsRichTextEdit::textHasChanged()
{
    clearMarks();
    parsed_ = false;
    emit numberOfLinesChanged(document()->blockCount());
}

// --- lines and data names -----------------------------------------------------------------------

bool QcbsRichTextEdit::isLoopLine() const
{
    return textCursor().block().text().trimmed().startsWith(QLatin1String("loop_"));
}

bool QcbsRichTextEdit::isCommentLine() const
{
    return textCursor().block().text().trimmed().startsWith(u'#');
}

bool QcbsRichTextEdit::isBlankLine() const
{
    return textCursor().block().text().trimmed().isEmpty();
}

bool QcbsRichTextEdit::isInTextBlock() const
{
    const QTextBlock current = textCursor().block();
    bool inside = false;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.text().trimmed().startsWith(u';'))
            inside = !inside;
        if (block == current)
            break;
    }
    return inside;
}

QString QcbsRichTextEdit::currentDataItem(bool wholeWord, bool withValue) const
{
    return dataItemAt(textCursor().blockNumber(), wholeWord, withValue);
}

QString QcbsRichTextEdit::dataItemAt(int paragraph, bool wholeWord, bool withValue) const
{
    QTextBlock block = document()->findBlockByNumber(paragraph);
    QString text = block.text().trimmed();
    if (text.isEmpty() && withValue) {
        block = block.previous();
        text = block.text().trimmed();
    }
    if (!text.startsWith(u'_'))
        return {};
    if (!wholeWord)
        return text;
    static const QRegularExpression whiteSpace(QStringLiteral("\\s"));
    const int end = text.indexOf(whiteSpace);
    const QString name = end < 0 ? text : text.left(end);
    return name.size() > 1 ? name : QString();
}

// --- files ---------------------------------------------------------------------------------------

void QcbsRichTextEdit::insertTemplateFile()
{
    if (templateFile().isEmpty()) {
        QMessageBox::information(this, QStringLiteral("Information"),
                                 QStringLiteral("You don't have a template file set. Choose one via the "
                                                "Edit->Preferences menu."));
        return;
    }
    insertFile(templateFile());
}

void QcbsRichTextEdit::insertFile()
{
    QFileDialog dialog(this, QStringLiteral("Insert file"));
    dialog.setObjectName(QStringLiteral("insertfd"));
    dialog.setNameFilter(QStringLiteral("CIF (*.cif);;Text (*.txt);;All Files (*)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        insertFile(dialog.selectedFiles().constFirst());
}

void QcbsRichTextEdit::insertFile(const QString& path)
{
    QByteArray bytes;
    QString error;
    if (!readCifFile(path, bytes, error)) {
        QMessageBox::critical(this, QStringLiteral("Error"),
                              QStringLiteral("Could not open file \"") + path + QLatin1Char('"') +
                                  (error.isEmpty() ? QString() : QStringLiteral("\n\n") + error));
        return;
    }
    // Line by line, each with a line feed, so that the inserted text ends a line whatever the
    // file's last byte.
    int lines = 0;
    const QString text = editorLines(decodeCifText(bytes), lines);
    textCursor().insertText(escapeSpecialCharacters(text));
    emit statusBarMessageRequest(QStringLiteral("Inserted ") + QString::number(lines) +
                                 QStringLiteral(" lines."));
}

// --- zoom and styles -----------------------------------------------------------------------------

void QcbsRichTextEdit::setBaseFont(const QFont& font)
{
    normalFont_ = font;
    setFont(font);
    document()->setDefaultFont(font);
}

void QcbsRichTextEdit::bigger()
{
    changeSize(2);
}

void QcbsRichTextEdit::smaller()
{
    changeSize(-2);
}

void QcbsRichTextEdit::changeSize(int points)
{
    if (normalFont_.pointSize() + points <= 0)
        return;
    const int scroll = verticalScrollBar()->value();
    const QTextCursor cursor = textCursor();
    QFont font = normalFont_;
    font.setPointSize(normalFont_.pointSize() + points);
    setBaseFont(font);
    // The highlighter colours every line again in the new size, which lays them out anew.
    highlighter_->setFont(points);
    setTextCursor(cursor);
    verticalScrollBar()->setValue(scroll);
    emit normalFontChanged(normalFont_);
    emit textSizeChanged(normalFont_.pointSize());
}

void QcbsRichTextEdit::setRemoveMarkers(bool remove)
{
    highlighter_->setRemoveMarkers(remove);
}

void QcbsRichTextEdit::refreshText()
{
    const bool modified = document()->isModified();
    const int scroll = verticalScrollBar()->value();
    highlighter_->rehighlight();
    verticalScrollBar()->setValue(scroll);
    document()->setModified(modified);
}

void QcbsRichTextEdit::processStyles()
{
    const QcbsStyles styles = QcbsStyleStore::read();
    highlighter_->applyStyles(styles);
    setBaseFont(styles.value(QStringLiteral("Standard")).font);
    emit normalFontChanged(normalFont_);
}

void QcbsRichTextEdit::resetToDefaultStyles()
{
    resetToDefaultStyles(true);
}

void QcbsRichTextEdit::resetToDefaultStyles(bool fixedWidth)
{
    const QFont base = fixedWidth ? QcbsStyleStore::fixedWidthBase() : QcbsStyleStore::variableWidthBase();
    QcbsStyleStore::write(QcbsStyleStore::shipped(base));
    processStyles();
}

// --- clipboard -----------------------------------------------------------------------------------

QMimeData* QcbsRichTextEdit::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    if (!cursor.hasSelection())
        return QPlainTextEdit::createMimeDataFromSelection();
    // What leaves the editor is CIF text: a Greek letter whose backslash lies outside the
    // selection gets it back, and the Angstrom and degree signs kept inside their escapes become
    // the escapes' letters.
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    QString out;
    for (QTextBlock block = document()->findBlock(start); block.isValid() && block.position() <= end;
         block = block.next()) {
        if (block.position() > start)
            out += u'\n';
        const QString text = block.text();
        const int from = std::max(0, start - block.position());
        const int to = std::min<int>(text.size(), end - block.position());
        for (int i = from; i < to; ++i) {
            const QChar c = text[i];
            if (i == from && QcbsSyntaxHighlighter_CIF::formatIdAt(block, i) ==
                                 QcbsSyntaxHighlighter_CIF::SpecialCharSymbol)
                out += u'\\';
            if (c == QChar(kAngstrom))
                out += u'A';
            else if (c == QChar(kDegree))
                out += u'%';
            else
                out += c;
        }
    }
    auto* data = new QMimeData;
    data->setText(out);
    return data;
}

void QcbsRichTextEdit::insertFromMimeData(const QMimeData* source)
{
    if (!source->hasText())
        return;
    textCursor().insertText(escapeSpecialCharacters(source->text()));
    ensureCursorVisible();
}

void QcbsRichTextEdit::copy()
{
    QPlainTextEdit::copy();
}

void QcbsRichTextEdit::paste()
{
    QClipboard* clipboard = QApplication::clipboard();
    const QString text = clipboard->text();
    if (text.isEmpty())
        return;
    clipboard->setText(escapeSpecialCharacters(text));
    QPlainTextEdit::paste();
}

// --- typed Angstrom and degree signs -------------------------------------------------------------

void QcbsRichTextEdit::keyPressEvent(QKeyEvent* event)
{
    const QString text = event->text();
    if (text.size() != 1 || (text[0] != QChar(kAngstrom) && text[0] != QChar(kDegree))) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    // The key brings its ASCII letter instead, so that the typing is one undo step.
    QKeyEvent repaired(event->type(), event->key(), event->modifiers(), repairTyped(text),
                       event->isAutoRepeat(), event->count());
    QPlainTextEdit::keyPressEvent(&repaired);
    event->setAccepted(repaired.isAccepted());
}

QString QcbsRichTextEdit::repairTyped(const QString& typed) const
{
    // A CIF writes an Angstrom sign as \%A and a degree sign as \%: typed alone they become the
    // escapes' letters. Inside its own escape (\%Å, or \° at the end of a word) the sign stays,
    // and copying turns it into the letter. In a comment no escape counts.
    // The typed character replaces the selection, if any, and lands where it starts.
    const QTextCursor cursor = textCursor();
    const QTextBlock block = document()->findBlock(cursor.selectionStart());
    const QString line = block.text();
    const int at = cursor.selectionStart() - block.position();
    const QChar prev = at >= 1 ? line[at - 1] : QChar();
    const QChar prev2 = at >= 2 ? line[at - 2] : QChar();
    const bool inComment =
        at >= 1 && QcbsSyntaxHighlighter_CIF::formatIdAt(block, at - 1) == QcbsSyntaxHighlighter_CIF::Comment;
    const int after = cursor.selectionEnd() - block.position();
    const QChar next = after < line.size() ? line[after] : QChar(u' ');
    if (typed[0] == QChar(kAngstrom)) {
        const bool inEscape = !inComment && prev == u'%' && prev2 == u'\\';
        return inEscape ? typed : QStringLiteral("A");
    }
    const bool inEscape = !inComment && prev == u'\\' && prev2 != u'\\';
    return inEscape && next.isSpace() ? typed : QStringLiteral("%");
}

// --- context menu and drops ----------------------------------------------------------------------

QMenu* QcbsRichTextEdit::createPopupMenu(const QPoint& position)
{
    auto* menu = new QMenu(this);
    if (readOnlyMenu_) {
        menu->addAction(QStringLiteral("Select All"), this, &QPlainTextEdit::selectAll);
        QAction* copyAction = menu->addAction(QStringLiteral("Copy"), this, &QcbsRichTextEdit::copy);
        copyAction->setEnabled(textCursor().hasSelection());
        return menu;
    }
    menu->setObjectName(QStringLiteral("rightclick"));
    const auto add = [&](const char* name, const QString& text, auto slot) {
        QAction* action = menu->addAction(text, this, slot);
        action->setObjectName(QLatin1String(name));
        return action;
    };
    add("undo", QStringLiteral("Undo"), &QPlainTextEdit::undo)->setEnabled(document()->isUndoAvailable());
    add("redo", QStringLiteral("Redo"), &QPlainTextEdit::redo)->setEnabled(document()->isRedoAvailable());
    menu->addSeparator();
    const bool selected = textCursor().hasSelection();
    add("cut", QStringLiteral("Cut"), &QPlainTextEdit::cut)->setEnabled(selected);
    add("copy", QStringLiteral("Copy"), &QcbsRichTextEdit::copy)->setEnabled(selected);
    add("paste", QStringLiteral("Paste"), &QcbsRichTextEdit::paste);
    menu->addSeparator();
    add("insert", QStringLiteral("Insert File"), qOverload<>(&QcbsRichTextEdit::insertFile));
    add("insert template", QStringLiteral("Insert Template"), &QcbsRichTextEdit::insertTemplateFile);
    QAction* help = add("item help", QStringLiteral("Item help"), &QcbsRichTextEdit::prepareDataitemHelp);
    help->setToolTip(QStringLiteral("Data item help"));
    help->setStatusTip(QStringLiteral("Data item help"));
    menu->addSeparator();
    add("selectall", QStringLiteral("Select All"), &QPlainTextEdit::selectAll);

    dataItemName_ = dataItemAt(cursorForPosition(position).blockNumber());
    help->setEnabled(!dataItemName_.isEmpty());
    return menu;
}

void QcbsRichTextEdit::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* menu = createPopupMenu(event->pos());
    menu->exec(event->globalPos());
    delete menu;
}

void QcbsRichTextEdit::prepareDataitemHelp()
{
    if (!dataItemName_.isEmpty())
        emit requestDataitemHelp(dataItemName_);
}

void QcbsRichTextEdit::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        QPlainTextEdit::dragEnterEvent(event);
}

void QcbsRichTextEdit::dropEvent(QDropEvent* event)
{
    // Dropped files are for the main window to open; dropped text is pasted like any text.
    if (event->mimeData()->hasUrls())
        emit dropEventRequest(event);
    else
        QPlainTextEdit::dropEvent(event);
}

// --- painting --------------------------------------------------------------------------------------

QList<QcbsRichTextEdit::VisibleLine> QcbsRichTextEdit::visibleLines() const
{
    QList<VisibleLine> lines;
    QTextBlock block = firstVisibleBlock();
    const QPointF offset = contentOffset();
    const int bottom = viewport()->height();
    while (block.isValid()) {
        const QRectF rect = blockBoundingGeometry(block).translated(offset);
        if (rect.top() > bottom)
            break;
        if (block.isVisible())
            lines.append({block.blockNumber(), qRound(rect.top()), qRound(rect.height())});
        block = block.next();
    }
    return lines;
}

void QcbsRichTextEdit::paintEvent(QPaintEvent* event)
{
    QPlainTextEdit::paintEvent(event);
    paintGreekLetters(event->rect());
}

void QcbsRichTextEdit::paintGreekLetters(const QRect& area)
{
    // A Greek escape keeps its Latin letter in the text (`\a`); its format draws that letter
    // invisibly and the Greek letter is painted into its place here, in the escape's colour.
    QPainter painter(viewport());
    const QPointF offset = contentOffset();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF rect = blockBoundingGeometry(block).translated(offset);
        if (rect.top() > area.bottom())
            break;
        if (rect.bottom() < area.top() || !block.isVisible())
            continue;
        const QTextLayout* layout = block.layout();
        const QString text = block.text();
        for (const QTextLayout::FormatRange& range : layout->formats()) {
            if (range.format.intProperty(QcbsSyntaxHighlighter_CIF::FormatIdProperty) !=
                QcbsSyntaxHighlighter_CIF::SpecialCharSymbol)
                continue;
            QFont font = range.format.font();
            font.setFamily(normalFont_.family());
            painter.setFont(font);
            painter.setPen(
                range.format.property(QcbsSyntaxHighlighter_CIF::SymbolColorProperty).value<QColor>());
            for (int i = range.start; i < range.start + range.length && i < text.size(); ++i) {
                const QChar greek = greekLetterForSymbolCode(text[i]);
                if (greek.isNull())
                    continue;
                const QTextLine line = layout->lineForTextPosition(i);
                const qreal x = line.cursorToX(i);
                const qreal y = rect.top() + line.y() + line.ascent();
                painter.drawText(QPointF(rect.left() + x, y), QString(greek));
            }
        }
    }
}
