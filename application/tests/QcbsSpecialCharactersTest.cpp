#include "GuiTestSupport.h"
#include "QcbsSpecialCharBrowser.h"
#include "QcbsSpecialCharDialog.h"
#include "SpecialCharacters.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextTable>
#include <QTimer>
#include <QtTest>

namespace {

using Pairs = QList<QPair<QString, QString>>;

// Accepts every message box that opens while it lives, and keeps what each said: a modal box
// would otherwise wait in the test for a click that never comes.
class MessageBoxCloser : public QObject {
public:
    MessageBoxCloser()
    {
        connect(&timer_, &QTimer::timeout, this, [this] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                said.append(box->windowTitle() + QStringLiteral(": ") + box->text());
                box->accept();
            }
        });
        timer_.start(5);
    }
    QStringList said;

private:
    QTimer timer_;
};

QString cellText(QTextTable* table, int row, int column)
{
    if (column >= table->columns())
        return QString();
    QTextCursor cursor = table->cellAt(row, column).firstCursorPosition();
    cursor.setPosition(table->cellAt(row, column).lastCursorPosition().position(), QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

// Each code on the page with the single character it is said to show: from a table cell and the
// cell beside it, and from the "... gives ..." examples.
Pairs shownCodes(QTextDocument* document)
{
    static const QRegularExpression example(QStringLiteral("^(\\S+) gives (\\S)$"));
    Pairs pairs;
    for (QTextFrame* frame : document->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        for (int row = 0; table && row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                const QString text = cellText(table, row, column), next = cellText(table, row, column + 1);
                if (text.startsWith('\\') && next.size() == 1)
                    pairs.append({text, next});
                if (const QRegularExpressionMatch match = example.match(text); match.hasMatch())
                    pairs.append({match.captured(1), match.captured(2)});
            }
        }
    }
    return pairs;
}

// The targets of the page's links with the text each shows.
Pairs links(QTextDocument* document)
{
    Pairs found;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        QString lastHref;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QString href = it.fragment().charFormat().anchorHref();
            if (!href.isEmpty() && href == lastHref)
                found.last().second += it.fragment().text();
            else if (!href.isEmpty())
                found.append({href, it.fragment().text()});
            lastHref = href;
        }
    }
    return found;
}

// A backslash, one of the marks and a letter.
bool isAccentEscape(const QString& text)
{
    static const QRegularExpression accent(QStringLiteral("^\\\\[/`'^~\"%,&=(;.<?>][A-Za-z]$"));
    return accent.match(text).hasMatch();
}

const QString kNotice =
    QStringLiteral("Special character: Sorry, special character insertion not yet implemented.");

} // namespace

class QcbsSpecialCharactersTest : public QObject {
    Q_OBJECT
    IsolatedSettings settings_;

private slots:
    void tableGroups()
    {
        int deleting = 0, accents = 0, others = 0, previous = 0;
        for (const SpecialCharacter& row : specialCharacterRows()) {
            QVERIFY2(row.code > previous, qPrintable(QString::number(row.code, 16)));
            previous = row.code;
            const QString text = QString::fromLatin1(row.text);
            ++(text.isEmpty() ? deleting : isAccentEscape(text) ? accents : others);
            // A replacement that needed escaping itself would let the character in on a paste.
            QCOMPARE(escapeSpecialCharacters(QString(QChar(row.code))), text);
            QCOMPARE(escapeSpecialCharacters(text), text);
        }
        QCOMPARE(deleting, 60);
        QCOMPARE(accents, 223);
        QCOMPARE(others, 73);
        QCOMPARE(specialCharacterRows().size(), std::size_t(356));
    }

    void escape_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QString& input, const QString& expected) {
            QTest::newRow(name) << input << expected;
        };
        row("empty", {}, {});
        row("plain CIF, tab and line breaks kept", "data_x\n_a\t5.4(2)\r\n", "data_x\n_a\t5.4(2)\r\n");
        row("controls deleted, also at the end", "a\001z\x1B\x1F", "az");
        row("C1 control deleted", "x\u0085y", "xy");
        row("DEL has no row", "a\x7F", "a\x7F");
        row("no-break and thin space", "100\u00A0K 5\u2009mm", "100 K 5 mm");
        row("Angstrom", "1.54 \u00C5", "1.54 \\%A");
        row("sharp s", "Stra\u00DFe", "Stra\\&se");
        row("times", "2\u00D73", "2\\\\times3");
        row("em dash", "a\u2014b", "a---b");
        row("squared", "m\u00B2", "m^2^");
        row("ligatures", "\u00C6\u0153\u01C4", "AEoeD\\^Z");
        row("Greek alpha kept", "\u03B1-quartz", "\u03B1-quartz");
        row("beyond 16 bits kept", "\U0001D6FC", "\U0001D6FC");
        row("three letters read D stroke", "\u00D0\u0110\u0189", "\\/D\\/D\\/D");
        row("T caron written lower case", "\u0164\u0165", "\\<t\\<t");
        row("both angle brackets", "\u2329\u3008x\u232A\u3009", "\\\\langle\\\\langlex\\\\rangle\\\\rangle");
        row("mixed", "M\u00FCller, 25\u00B0C \u00B1 1, \u03B2 = 90\u00B0\x01",
            "M\\\"uller, 25\\%C +- 1, \u03B2 = 90\\%");
    }
    void escape()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QCOMPARE(escapeSpecialCharacters(input), expected);
    }

    void symbolFont_data()
    {
        QTest::addColumn<QChar>("latin");
        QTest::addColumn<QChar>("greek");
        const std::pair<char, char16_t> letters[] = {
            {'a', 0x03B1}, {'c', 0x03C7}, {'j', 0x03D5}, {'q', 0x03B8}, {'v', 0x03D6},
            {'z', 0x03B6}, {'A', 0x0391}, {'J', 0x03D1}, {'V', 0x03C2}, {'Z', 0x0396}};
        for (const auto& [latin, greek] : letters)
            QTest::addRow("%c", latin) << QChar(latin) << QChar(greek);
        for (const char16_t other : {u'@', u'[', u'`', u'{', u'1', u'\\', u'\u00E9', u'\u03B1'})
            QTest::addRow("U+%04X none", unsigned(other)) << QChar(other) << QChar();
    }
    void symbolFont()
    {
        QFETCH(QChar, latin);
        QFETCH(QChar, greek);
        QCOMPARE(greekLetterForSymbolCode(latin), greek);
        // Apart from the variant forms, a capital Latin letter gives the capital of its Greek letter.
        if (latin.isLower() && latin != 'j' && latin != 'v')
            QCOMPARE(greekLetterForSymbolCode(latin.toUpper()), greek.toUpper());
    }

    void browserCommands_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<int>("done");
        QTest::addColumn<QStringList>("inserted");
        QTest::newRow("close") << "CLOSE_WINDOW" << 1 << QStringList();
        QTest::newRow("close, resolved") << "qrc:/docs/CLOSE_WINDOW" << 1 << QStringList();
        QTest::newRow("one blob") << "INSERT_blobA" << 0 << QStringList{"\\A"};
        QTest::newRow("two blobs") << "INSERT_blobblobtimes" << 0 << QStringList{"\\\\times"};
        QTest::newRow("percent-encoded mark") << "INSERT_blob%25A" << 0 << QStringList{"\\%A"};
        QTest::newRow("resolved, quote mark") << "qrc:/docs/INSERT_blob%22o" << 0 << QStringList{"\\\"o"};
        QTest::newRow("no backslash") << "INSERT_%5E2%5E" << 0 << QStringList{"^2^"};
        QTest::newRow("underscore kept") << "INSERT_U~iso_" << 0 << QStringList{"U~iso_"};
        QTest::newRow("section anchor") << "#greek" << 0 << QStringList();
    }
    void browserCommands()
    {
        QFETCH(QString, link);
        QFETCH(int, done);
        QFETCH(QStringList, inserted);
        QcbsSpecialCharDialog dialog;
        auto* browser = dialog.findChild<QcbsSpecialCharBrowser*>();
        QVERIFY(browser);
        const QString page = browser->toPlainText();
        QSignalSpy doneSpy(browser, &QcbsSpecialCharBrowser::userDone);
        QSignalSpy insertSpy(browser, &QcbsSpecialCharBrowser::insertMe);
        MessageBoxCloser closer;

        browser->setSource(QUrl(link));

        QCOMPARE(doneSpy.count(), done);
        QStringList emitted;
        for (const QList<QVariant>& arguments : insertSpy)
            emitted << arguments.at(0).toString();
        QCOMPARE(emitted, inserted);
        QCOMPARE(closer.said, inserted.isEmpty() ? QStringList() : QStringList{kNotice});
        QCOMPARE(browser->toPlainText(), page); // a command never replaces the page
    }

    void dialogCloses_data()
    {
        QTest::addColumn<bool>("byButton");
        QTest::newRow("close link") << false;
        QTest::newRow("close button") << true;
    }
    void dialogCloses()
    {
        QFETCH(bool, byButton);
        QcbsSpecialCharDialog dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Special characters"));
        dialog.show();
        QVERIFY(dialog.isVisible());
        auto* button = dialog.findChild<QPushButton*>();
        QCOMPARE(button->text(), QStringLiteral("Close"));
        if (byButton)
            button->click();
        else
            dialog.findChild<QcbsSpecialCharBrowser*>()->setSource(QUrl(QStringLiteral("CLOSE_WINDOW")));
        QVERIFY(!dialog.isVisible());
    }

    // The page loads, every code it shows is read that way by the program, and every link
    // inserts the code it shows.
    void helpPage()
    {
        QcbsSpecialCharDialog dialog;
        auto* browser = dialog.findChild<QcbsSpecialCharBrowser*>();
        QCOMPARE(browser->source(), QUrl(QStringLiteral("qrc:/docs/special-characters.html")));
        QVERIFY(browser->toPlainText().contains(QStringLiteral("Greek letters")));

        const Pairs shown = shownCodes(browser->document());
        QVERIFY2(shown.size() > 80, qPrintable(QString::number(shown.size())));
        for (const auto& [code, character] : shown) {
            const bool greek = code.size() == 2 && greekLetterForSymbolCode(code.at(1)) == character.at(0);
            QVERIFY2(greek || escapeSpecialCharacters(character) == code, qPrintable(code + " " + character));
        }

        const Pairs pageLinks = links(browser->document());
        QVERIFY(pageLinks.contains({QStringLiteral("CLOSE_WINDOW"), QStringLiteral("Close")}));
        QSignalSpy insertSpy(browser, &QcbsSpecialCharBrowser::insertMe);
        MessageBoxCloser closer;
        int inserts = 0;
        for (const auto& [href, text] : pageLinks) {
            if (!href.startsWith(QStringLiteral("INSERT_")))
                continue;
            browser->setSource(browser->source().resolved(QUrl(href)));
            QCOMPARE(insertSpy.count(), ++inserts);
            QCOMPARE(insertSpy.last().at(0).toString(), text);
        }
        QVERIFY(inserts > 60);
    }
};

QTEST_MAIN(QcbsSpecialCharactersTest)
#include "QcbsSpecialCharactersTest.moc"
