#include "QcbsRichTextEdit.h"

#include "GuiTestSupport.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QClipboard>
#include <QMenu>
#include <QMessageBox>
#include <QTextBlock>
#include <QtTest>
#include <tuple>

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

} // namespace

class QcbsRichTextEditTest : public QObject {
    Q_OBJECT
private slots:
    // What each line of the sample is: loop keyword, comment, blank, inside a text block, and the
    // data item whose help a user would get there.
    void lineTests()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        QStringList lines;
        for (int paragraph = 0; paragraph < 11; ++paragraph) {
            moveToLine(editor, paragraph);
            lines << QString(editor.isLoopLine() ? "L" : "") + (editor.isCommentLine() ? "C" : "") +
                         (editor.isBlankLine() ? "B" : "") + (editor.isInTextBlock() ? "T" : "") +
                         editor.currentDataItem();
        }
        QCOMPARE(lines.join('|'),
                 QStringLiteral("|_cell_length_a|_title|B_title|C|L|_atom_site_label||T|T|"));
    }

    // A line out of range leaves the cursor where it was; another is selected whole and marked.
    void gotoLine()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        for (const auto& [line, paragraph, selected] :
             {std::tuple(1, 0, "data_test"), std::tuple(11, 10, ";"), std::tuple(0, 6, ""),
              std::tuple(12, 6, "")}) {
            moveToLine(editor, 6);
            editor.gotoLine(line, QString());
            QCOMPARE(editor.textCursor().blockNumber(), paragraph);
            QCOMPARE(editor.textCursor().selectedText(), QString(selected));
            QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::GotoMark), *selected ? paragraph : -1);
        }
    }

    // A finding marks its line and puts the cursor at its column while the line count is the one of the
    // check; moving within the line keeps the mark, leaving it or editing clears it. Once a line has
    // been added the marks would point at the wrong lines, so there are none until the next check.
    void errorMarks()
    {
        QcbsRichTextEdit editor(nullptr, false);
        editor.setText(kSample);
        editor.setLinesAtCheck(editor.document()->blockCount());
        editor.setParsed(true);
        editor.setErrorHighlighting(7, 3, true);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), 6);
        QCOMPARE(editor.textCursor().blockNumber() * 100 + editor.textCursor().positionInBlock(), 602);
        QCOMPARE(editor.extraSelections().constFirst().format.background().color(), QColor(204, 232, 195));
        editor.moveCursor(QTextCursor::EndOfBlock);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), 6);
        moveToLine(editor, 4);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), -1);
        QVERIFY(editor.extraSelections().isEmpty());

        editor.setErrorHighlighting(5, 0);
        QSignalSpy lines(&editor, &QcbsRichTextEdit::numberOfLinesChanged);
        QSignalSpy status(&editor, &QcbsRichTextEdit::statusBarMessageRequest);
        editor.textCursor().insertText(QStringLiteral("\n"));
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), -1);
        QVERIFY(!editor.parsed());
        QCOMPARE(lines.constLast().constFirst().toInt(), 12);
        editor.setErrorHighlighting(7, 3, true);
        QCOMPARE(editor.markedParagraph(QcbsRichTextEdit::ErrorMark), -1);
        QCOMPARE(status.constLast().constFirst().toString(),
                 QStringLiteral("(error highlighting disabled until after next check)"));
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
        row("copy Greek escape whole", "copy", "_t [\\a-helix]", "", "\\a-helix");
        row("copy Angstrom kept in its escape", "copy", "_u [\\%\u00C5]", "", "\\%A");
        row("paste tab kept", "paste", "", "a\tb", "a\tb");
        row("paste control character deleted", "paste", "", "a\001b", "ab");
        row("paste Angstrom", "paste", "", "5 \u00C5", "5 \\%A");
        row("type Angstrom alone", "type", "_u 5 ", "\u00C5", "_u 5 A");
        row("type Angstrom in its escape", "type", "_u \\%", "\u00C5", "_u \\%\u00C5");
        row("type degree escaped at the end", "type", "_t \\", "\u00B0", "_t \\\u00B0");
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

private:
    IsolatedSettings settings_;
};

QTEST_MAIN(QcbsRichTextEditTest)
#include "QcbsRichTextEditTest.moc"
