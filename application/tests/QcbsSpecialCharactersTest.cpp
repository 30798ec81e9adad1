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
#include <QtTest>

namespace {

using Pairs = QList<QPair<QString, QString>>;

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

const QString kNotice =
    QStringLiteral("Special character|Sorry, special character insertion not yet implemented.");

} // namespace

class QcbsSpecialCharactersTest : public QObject {
    Q_OBJECT
    IsolatedSettings settings_;

private slots:
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
        QSignalSpy done(browser, &QcbsSpecialCharBrowser::userDone);
        browser->setSource(browser->source().resolved(QUrl(QStringLiteral("CLOSE_WINDOW"))));
        QCOMPARE(done.count(), 1);
        QSignalSpy insertSpy(browser, &QcbsSpecialCharBrowser::insertMe);
        ModalCatcher closer;
        int inserts = 0;
        for (const auto& [href, text] : pageLinks) {
            if (!href.startsWith(QStringLiteral("INSERT_")))
                continue;
            browser->setSource(browser->source().resolved(QUrl(href)));
            QCOMPARE(insertSpy.count(), ++inserts);
            QCOMPARE(insertSpy.last().at(0).toString(), text);
            QCOMPARE(closer.seen.value(inserts - 1), kNotice);
        }
        QVERIFY(inserts > 60);
    }
};

QTEST_MAIN(QcbsSpecialCharactersTest)
#include "QcbsSpecialCharactersTest.moc"
