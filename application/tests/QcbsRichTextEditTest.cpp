#include "QcbsRichTextEdit.h"

#include "GuiTestSupport.h"
#include "QcbsLineNumberView.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QClipboard>
#include <QMenu>
#include <QMessageBox>
#include <QTextBlock>
#include <QtTest>

namespace {

const QString kSample = QStringLiteral("data_test\n"          // 1
                                       "_cell_length_a 5.1\n" // 2
                                       "_title\n"             // 3
                                       "\n"                   // 4
                                       "# note\n"             // 5
                                       "loop_\n"              // 6
                                       "_atom_site_label\n"   // 7
                                       "C1\n"                 // 8
                                       ";\n"                  // 9
                                       "text\n"               // 10
                                       ";");                  // 11

void moveToLine(QcbsRichTextEdit& editor, int paragraph)
{
    editor.setTextCursor(QTextCursor(editor.document()->findBlockByNumber(paragraph)));
}

// Answers the next modal box with its default button, and keeps its title and text.
struct BoxWatcher {
    QString title, text;
    void arm()
    {
        QTimer::singleShot(0, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                title = box->windowTitle();
                text = box->text();
                box->accept();
            }
        });
    }
};

} // namespace

class QcbsRichTextEditTest : public QObject {
    Q_OBJECT
private slots:
    void lineTests_data()
    {
        QTest::addColumn<int>("paragraph");
        QTest::addColumn<bool>("loop");
        QTest::addColumn<bool>("comment");
        QTest::addColumn<bool>("blank");
        QTest::addColumn<bool>("textBlock");
        QTest::addColumn<QString>("item");

        QTest::newRow("heading") << 0 << false << false << false << false << "";
        QTest::newRow("item with value") << 1 << false << false << false << false << "_cell_length_a";
        QTest::newRow("blank line after a name") << 3 << false << false << true << false << "_title";
        QTest::newRow("comment") << 4 << false << true << false << false << "";
        QTest::newRow("loop") << 5 << true << false << false << false << "";
        QTest::newRow("name in loop") << 6 << false << false << false << false << "_atom_site_label";
        QTest::newRow("opening semicolon") << 8 << false << false << false << true << "";
        QTest::newRow("inside text") << 9 << false << false << false << true << "";
        QTest::newRow("closing semicolon") << 10 << false << false << false << false << "";
    }
    void lineTests()
    {
        QFETCH(int, paragraph);
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        moveToLine(editor, paragraph);
        QTEST(editor.isLoopLine(), "loop");
        QTEST(editor.isCommentLine(), "comment");
        QTEST(editor.isBlankLine(), "blank");
        QTEST(editor.isInTextBlock(), "textBlock");
        QTEST(editor.currentDataItem(), "item");
    }

    void gotoLine_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("paragraph"); // where the cursor ends, -1 for unmoved
        QTest::addColumn<QString>("selected");

        QTest::newRow("first line") << 1 << 0 << "data_test";
        QTest::newRow("an item") << 2 << 1 << "_cell_length_a 5.1";
        QTest::newRow("last line") << 11 << 10 << ";";
        QTest::newRow("line 0") << 0 << -1 << "";
        QTest::newRow("past the end") << 12 << -1 << "";
    }
    void gotoLine()
    {
        QFETCH(int, line);
        QFETCH(int, paragraph);
        QFETCH(QString, selected);
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        moveToLine(editor, 6);
        editor.gotoLine(line, QString());
        QCOMPARE(editor.textCursor().blockNumber(), paragraph < 0 ? 6 : paragraph);
        QCOMPARE(editor.textCursor().selectedText(), selected);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::GotoMark), paragraph);
    }

    void errorMarksFollowTheLineCount_data()
    {
        QTest::addColumn<QString>("edit"); // inserted at the start of line 2 after the check
        QTest::addColumn<bool>("marked");

        QTest::newRow("no edit") << "" << true;
        QTest::newRow("change inside a line") << "x" << true;
        QTest::newRow("one line added") << "x\n" << false;
    }
    void errorMarksFollowTheLineCount()
    {
        QFETCH(QString, edit);
        QFETCH(bool, marked);
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        editor.setLinesAtCheck(editor.document()->blockCount());
        QTextCursor(editor.document()->findBlockByNumber(1)).insertText(edit);

        QSignalSpy status(&editor, &QcbsRichTextEdit::statusBarMessageRequest);
        editor.setErrorHighlighting(7, 3, true);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), marked ? 6 : -1);
        QCOMPARE(editor.extraSelections().size(), marked ? 1 : 0);
        if (marked) {
            QCOMPARE(editor.textCursor().blockNumber(), 6);
            QCOMPARE(editor.textCursor().positionInBlock(), 2);
            QCOMPARE(editor.extraSelections().constFirst().format.background().color(),
                     QColor(204, 232, 195));
            QCOMPARE(status.count(), 0);
        } else {
            QCOMPARE(status.count(), 1);
            QCOMPARE(status.constFirst().constFirst().toString(),
                     QStringLiteral("(error highlighting disabled until after next check)"));
        }
    }

    void marksClearWhenTheCursorLeaves()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        editor.setLinesAtCheck(editor.document()->blockCount());
        editor.setParsed(true);
        editor.setErrorHighlighting(2, 0);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), 1);

        // Moving within the marked line keeps the mark; leaving it clears it.
        QTextCursor cursor = editor.textCursor();
        cursor.movePosition(QTextCursor::EndOfBlock);
        editor.setTextCursor(cursor);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), 1);
        moveToLine(editor, 4);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), -1);
        QVERIFY(editor.extraSelections().isEmpty());

        // An edit clears the marks and the parsed state, and reports the line count.
        editor.setErrorHighlighting(5, 0);
        QSignalSpy lines(&editor, &QcbsRichTextEdit::numberOfLinesChanged);
        editor.textCursor().insertText(QStringLiteral("\n"));
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), -1);
        QVERIFY(!editor.parsed());
        QCOMPARE(lines.constLast().constFirst().toInt(), 12);
    }

    // Text in the editor, with the selection to copy between '[' and ']'; what is copied, pasted or
    // typed at its end; the text in the editor (or on the clipboard, for a copy) afterwards.
    void clipboardAndTyping_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("result");
        const auto row = [](const char* name, const char* action, const char* text, const char* input,
                            const char* result) {
            QTest::newRow(name) << QString(action) << QString(text) << QString(input) << QString(result);
        };
        row("copy plain", "copy", "[_a 1\n_b 2]", "", "_a 1\n_b 2");
        row("copy Greek escape whole", "copy", "_t [\\a-helix]", "", "\\a-helix");
        row("copy Greek letter without its backslash", "copy", "_t \\[a-helix]", "", "\\a-helix");
        row("copy Angstrom kept in its escape", "copy", "_u [\\%\u00C5]", "", "\\%A");
        row("copy degree sign", "copy", "_t [5\u00B0]", "", "5%");
        row("paste tab kept", "paste", "", "a\tb", "a\tb");
        row("paste control character deleted", "paste", "", "a\001b", "ab");
        row("paste Angstrom", "paste", "", "5 \u00C5", "5 \\%A");
        row("paste Greek in Unicode kept", "paste", "", "\u03B1", "\u03B1");
        row("type Angstrom alone", "type", "_u 5 ", "\u00C5", "_u 5 A");
        row("type Angstrom in its escape", "type", "_u \\%", "\u00C5", "_u \\%\u00C5");
        row("type degree", "type", "_t 90", "\u00B0", "_t 90%");
        row("type degree escaped at the end", "type", "_t \\", "\u00B0", "_t \\\u00B0");
        row("type other letters untouched", "type", "_t ", "\u00E9", "_t \u00E9");
    }
    void clipboardAndTyping()
    {
        QFETCH(QString, action);
        QFETCH(QString, text);
        QFETCH(QString, input);
        QFETCH(QString, result);
        const int from = text.indexOf('['), to = text.indexOf(']') - 1;
        text.remove('[').remove(']');
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(text);
        QCoreApplication::processEvents(); // the first colouring
        editor.moveCursor(QTextCursor::End);
        if (action == QLatin1String("copy")) {
            QTextCursor cursor(editor.document());
            cursor.setPosition(from);
            cursor.setPosition(to, QTextCursor::KeepAnchor);
            editor.setTextCursor(cursor);
            editor.copy();
            QCOMPARE(QApplication::clipboard()->text(), result);
        } else if (action == QLatin1String("paste")) {
            QApplication::clipboard()->setText(input);
            editor.paste();
            QCOMPARE(editor.toPlainText(), result);
            // A paste by the keyboard goes the same way.
            editor.clear();
            QApplication::clipboard()->setText(input);
            QTest::keySequence(&editor, QKeySequence::Paste);
            QCOMPARE(editor.toPlainText(), result);
        } else {
            // A key press that brings the character, as a keyboard layout with the letter sends it.
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, input);
            QApplication::sendEvent(&editor, &press);
            QCoreApplication::processEvents();
            QCOMPARE(editor.toPlainText(), result);
            // One undo takes the typing and its repair away together.
            editor.undo();
            QCOMPARE(editor.toPlainText(), text);
        }
    }

    void zoomNeverReachesZero()
    {
        QcbsRichTextEdit editor(nullptr, false);
        const int start = editor.normalFont().pointSize();
        QSignalSpy sizes(&editor, &QcbsRichTextEdit::textSizeChanged);
        for (int i = 0; i < start; ++i)
            editor.smaller();
        // Steps of 2 down to the last size above 0, then nothing.
        const int steps = (start - 1) / 2;
        QCOMPARE(sizes.count(), steps);
        QCOMPARE(editor.normalFont().pointSize(), start - 2 * steps);
        QVERIFY(editor.normalFont().pointSize() > 0);

        const int comment =
            editor.highlighter()->styleFormat(QcbsSyntaxHighlighter_CIF::Comment).font().pointSize();
        editor.bigger();
        QCOMPARE(sizes.constLast().constFirst().toInt(), start - 2 * steps + 2);
        QCOMPARE(editor.highlighter()->styleFormat(QcbsSyntaxHighlighter_CIF::Comment).font().pointSize(),
                 comment + 2);
    }

    void insertFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("inserted");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, const QByteArray& content, const char* inserted, int lines) {
            QTest::newRow(name) << content << QString(inserted)
                                << QStringLiteral("Inserted %1 lines.").arg(lines);
        };
        row("one line without end", "_a 1", "_a 1\n", 1);
        row("CR LF lines", "_a 1\r\n_b 2\r\n", "_a 1\n_b 2\n", 2);
        row("UTF-8 accent", "_n Jos\xC3\xA9\n", "_n Jos\\'e\n", 1);
        row("Latin-1 accent", "_n Jos\xE9\n", "_n Jos\\'e\n", 1);
        row("empty file", "", "", 0);
    }
    void insertFile()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("part.cif")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();

        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(QStringLiteral("data_x\n"));
        editor.moveCursor(QTextCursor::End);
        QSignalSpy status(&editor, &QcbsRichTextEdit::statusBarMessageRequest);
        editor.insertFile(file.fileName());
        QFETCH(QString, inserted);
        QCOMPARE(editor.toPlainText(), QStringLiteral("data_x\n") + inserted);
        QTEST(status.constLast().constFirst().toString(), "message");
    }

    void insertWithoutFileOrTemplate()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(QStringLiteral("data_x"));
        BoxWatcher box;
        box.arm();
        editor.insertFile(QStringLiteral("/no/such/dir/x.cif"));
        QCOMPARE(box.title, QStringLiteral("Error"));
        QCOMPARE(box.text, QStringLiteral("Could not open file \"/no/such/dir/x.cif\""));
        QCOMPARE(editor.toPlainText(), QStringLiteral("data_x"));

        QcbsRichTextEdit::setTemplateFile(QString());
        box.arm();
        editor.insertTemplateFile();
        QCOMPARE(box.title, QStringLiteral("Information"));
        QCOMPARE(
            box.text,
            QStringLiteral("You don't have a template file set. Choose one via the Edit->Preferences menu."));
        QCOMPARE(editor.toPlainText(), QStringLiteral("data_x"));
    }

    void contextMenu()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.resize(400, 300);
        editor.setText(kSample);
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));

        const auto menuAt = [&](int paragraph) {
            const QTextBlock block = editor.document()->findBlockByNumber(paragraph);
            const QPoint point = editor.cursorRect(QTextCursor(block)).center();
            return std::unique_ptr<QMenu>(editor.createPopupMenu(point));
        };
        std::unique_ptr<QMenu> menu = menuAt(1);
        QCOMPARE(menu->objectName(), QStringLiteral("rightclick"));
        QStringList entries;
        for (QAction* action : menu->actions())
            entries << (action->isSeparator() ? QStringLiteral("|")
                                              : action->objectName() + u'=' + action->text());
        QCOMPARE(entries, (QStringList{"undo=Undo", "redo=Redo", "|", "cut=Cut", "copy=Copy", "paste=Paste",
                                       "|", "insert=Insert File", "insert template=Insert Template",
                                       "item help=Item help", "|", "selectall=Select All"}));
        QAction* help = menu->findChild<QAction*>(QStringLiteral("item help"));
        QVERIFY(help->isEnabled());
        QSignalSpy requests(&editor, &QcbsRichTextEdit::requestDataitemHelp);
        help->trigger();
        QCOMPARE(requests.constLast().constFirst().toString(), QStringLiteral("_cell_length_a"));

        QVERIFY(!menuAt(0)->findChild<QAction*>(QStringLiteral("item help"))->isEnabled());

        editor.setReadOnlyMenu(true);
        QStringList readOnly;
        for (QAction* action : menuAt(1)->actions())
            readOnly << action->text();
        QCOMPARE(readOnly, (QStringList{"Select All", "Copy"}));
        QVERIFY(editor.isReadOnly());
    }

    void greekLetterIsPainted()
    {
        // The escape's Latin letter is drawn invisibly, so any ink in its cell is the Greek letter
        // painted over it; a Latin letter that is no escape keeps its own ink.
        QcbsRichTextEdit editor(nullptr, false);
        editor.resize(300, 100);
        editor.setText(QStringLiteral("\\a x"));
        editor.show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor));
        QCoreApplication::processEvents();
        const QImage image = editor.viewport()->grab().toImage();
        const auto inkIn = [&](int position) {
            QTextCursor cursor(editor.document());
            cursor.setPosition(position);
            const QRect left = editor.cursorRect(cursor);
            cursor.setPosition(position + 1);
            const QRect cell(left.topLeft(), QPoint(editor.cursorRect(cursor).left() - 1, left.bottom()));
            int ink = 0;
            for (int y = cell.top(); y <= cell.bottom(); ++y)
                for (int x = cell.left(); x <= cell.right(); ++x)
                    ink += qGray(image.pixel(x, y)) < 128;
            return ink;
        };
        QVERIFY(inkIn(1) > 0);
        QVERIFY(inkIn(3) > 0);

        // With the overlay the text stays the escape.
        QCOMPARE(editor.toPlainText(), QStringLiteral("\\a x"));
    }

    void lineNumbers()
    {
        QcbsLineNumberedTextEdit edit;
        edit.resize(400, 300);
        edit.editor()->setText(kSample);
        edit.show();
        QVERIFY(QTest::qWaitForWindowExposed(&edit));
        QcbsLineNumberView* view = edit.lineNumberView();
        QCOMPARE(view->numberOfLines(), 11);
        const int twoDigits = view->width();
        QString many;
        for (int i = 0; i < 1000; ++i)
            many += QStringLiteral("_a%1 1\n").arg(i);
        edit.editor()->setText(many);
        QCOMPARE(view->numberOfLines(), 1001);
        QVERIFY(view->width() > twoDigits);
        QCOMPARE(edit.editor()->visibleLines().constFirst().paragraph, 0);

        edit.editor()->gotoLine(900, QString());
        QVERIFY(edit.editor()->visibleLines().constFirst().paragraph > 800);

        edit.setShowLineNumbers(false);
        QVERIFY(!view->isVisible());
        edit.setShowLineNumbers(true);
        QVERIFY(view->isVisible());
    }

    void stylesSurviveARestart()
    {
        settings_.clear();
        {
            QcbsRichTextEdit editor(nullptr, true);
            QCOMPARE(editor.normalFont().family(), QStringLiteral("Courier"));
            editor.resetToDefaultStyles(false);
            QCOMPARE(editor.normalFont().family(), QcbsStyleStore::variableWidthBase().family());
        }
        QcbsRichTextEdit next(nullptr, true);
        QCOMPARE(next.normalFont().family(), QcbsStyleStore::variableWidthBase().family());
        QCOMPARE(next.highlighter()->styleFormat(QcbsSyntaxHighlighter_CIF::Keyword).foreground().color(),
                 QColor(Qt::magenta));
    }

private:
    IsolatedSettings settings_;
};

QTEST_MAIN(QcbsRichTextEditTest)
#include "QcbsRichTextEditTest.moc"
