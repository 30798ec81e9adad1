#include "Cif.h"
#include "CifDictionaryPool.h"
#include "GuiTestSupport.h"
#include "QcbsErrorListView.h"
#include "QcbsErrorReport.h"
#include "QcbsOutputPane.h"
#include "QcbsRichTextEdit.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>
#include <sstream>

namespace {

// A checked document and the views it is reported to. The dictionary is empty, so every data item
// draws warning 320 unless `itemWarnings` is off.
struct Checked {
    QcbsRichTextEdit editor{nullptr, false};
    QcbsErrorListView list;
    QcbsOutputPane pane;
    Cif cif{HCifDictionaryPool(new CifDictionaryPool)};

    explicit Checked(const QString& text, bool itemWarnings = true)
    {
        editor.setText(text);
        if (!itemWarnings)
            cif.errors()->suppress(320);
        std::istringstream in(text.toStdString());
        cif.read(in);
    }
    void report(int limit) { QcbsErrorReport(&list, &pane, &editor).report(cif, limit); }

    // Each listed finding as kind letter, line and message: "E7 (check stopped)".
    QStringList listed() const
    {
        QStringList out;
        for (int kind = 0; kind < list.topLevelItemCount(); ++kind)
            for (int i = 0; i < list.topLevelItem(kind)->childCount(); ++i) {
                const QTreeWidgetItem* item = list.topLevelItem(kind)->child(i);
                out << QString(QLatin1String("EWR").at(kind)) + item->text(0).mid(5).trimmed() + ' ' +
                           item->text(1);
            }
        return out;
    }
    QStringList roots(int column) const
    {
        QStringList out;
        for (int kind = 0; kind < list.topLevelItemCount(); ++kind)
            out << list.topLevelItem(kind)->text(column);
        return out;
    }
    // The item of `kind` listed at `line`, or the branch itself for line 0.
    QTreeWidgetItem* item(int kind, int line) const
    {
        QTreeWidgetItem* root = list.topLevelItem(kind);
        for (int i = 0; i < root->childCount(); ++i)
            if (root->child(i)->text(0) == QStringLiteral("Line %1").arg(line, 7))
                return root->child(i);
        return line == 0 ? root : nullptr;
    }
};

// One block "data_t" followed by `body`, one line each.
QString cif(const QStringList& body)
{
    return QStringLiteral("data_t\n") + body.join('\n') + '\n';
}

QStringList rows(const char* kind, std::initializer_list<int> lines, const QString& message)
{
    QStringList out;
    for (int line : lines)
        out << kind + QString::number(line) + ' ' + message;
    return out;
}

// Warnings 320 for the items "_a", "_b", ... named by `letters`, from `line` on.
QStringList created(int line, const QString& letters)
{
    QStringList out;
    for (QChar letter : letters)
        out << QStringLiteral("W%1 Created non-standard data item _%2").arg(line++).arg(letter);
    return out;
}

const QString quote = QStringLiteral("No terminating (') quote");
const QString none = QStringLiteral(" - none");
QString total(int n)
{
    return QStringLiteral("  Total of %1").arg(n);
}
// The stop message continues the pane's current line (after the banner, an empty one); every
// other text starts a new line.
QString stopped(int line)
{
    return QStringLiteral("Check stopped at line %1: fix previous errors first.\n"
                          "(You can change this limit in the preferences.)")
        .arg(line);
}
QString totals(int errors, int warnings, int remarks)
{
    return QStringLiteral("\nTotal errors: %1; warnings: %2; remarks: %3")
        .arg(errors)
        .arg(warnings)
        .arg(remarks);
}

} // namespace

class QcbsErrorListTest : public QObject {
    Q_OBJECT
    IsolatedSettings settings_;

private slots:
    void report_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("limit");
        QTest::addColumn<bool>("itemWarnings");
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QStringList>("totalTexts");
        QTest::addColumn<QString>("pane");

        const QStringList sixQuotes = {"_a 'x", "_b 'x", "_c 'x", "_d 'x", "_e 'x", "_f 'x"};
        QTest::newRow("five consecutive error lines stop at the fifth")
            << cif(sixQuotes) << 4 << false
            << rows("E", {2, 3, 4, 5, 6}, quote) + rows("E", {7}, "(check stopped)")
            << QStringList{total(6), none, none} << stopped(6) + totals(6, 0, 0);
        QTest::newRow("errors on every other line never stop")
            << QStringLiteral("data_t 'x\n_a 1\n_b 'x\n_c 1\n_d 'x\n_e 1\n_f 'x\n_g 1\n_h 'x\n") << 1 << false
            << rows("E", {1, 3, 5, 7, 9}, quote) + rows("W", {1}, "Ignored string x")
            << QStringList{total(5), total(1), none} << totals(5, 1, 0);
        QTest::newRow("seven consecutive warning lines: four, then a note")
            << cif({"_a 1", "_b 1", "_c 1", "_d 1", "_e 1", "_f 1", "_g 1"}) << 4 << true
            << created(2, "abcd") + rows("W", {6}, "(warnings omitted)") << QStringList{none, total(5), none}
            << totals(0, 7, 0);
        QTest::newRow("validation reply items are not listed and do not extend a run")
            << cif({"_a 1", "_b_vrf 1", "_c 1", "_d 1"}) << 2 << true << created(2, "a") + created(4, "cd")
            << QStringList{none, total(3), none} << totals(0, 4, 0);
        QTest::newRow("a clean file") << cif({}) << 4 << true << QStringList()
                                      << QStringList{none, none, none} << "\nNo errors, warnings or remarks.";
    }

    void report()
    {
        QFETCH(QString, text);
        QFETCH(int, limit);
        QFETCH(bool, itemWarnings);
        QFETCH(QStringList, listed);
        QFETCH(QStringList, totalTexts);
        QFETCH(QString, pane);
        Checked checked(text, itemWarnings);
        checked.list.addError(QStringLiteral("left from an earlier check"), 1, 301);
        checked.report(limit);
        QCOMPARE(checked.listed(), listed);
        QCOMPARE(checked.roots(0), QStringList({"Errors", "Warnings", "Remarks"}));
        QCOMPARE(checked.roots(1), totalTexts);
        QCOMPARE(checked.pane.toPlainText().section('\n', 1), pane);
    }

    void clickItem_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("line");             // 0 for the branch
        QTest::addColumn<int>("rightClickColumn"); // -1 for a double click
        QTest::addColumn<QStringList>("emitted");

        QTest::newRow("a message naming a line marks it first")
            << 0 << 14 << -1 << QStringList{"12 1 1", "14 2 0"};
        QTest::newRow("help on a message")
            << 0 << 3 << 1 << QStringList{"cifward/PortableHTML/cifward-1-063.html"};
        QTest::newRow("no help on a note of the report") << 1 << 6 << 1 << QStringList();
    }

    void clickItem()
    {
        QFETCH(int, kind);
        QFETCH(int, line);
        QFETCH(int, rightClickColumn);
        QFETCH(QStringList, emitted);
        QStringList body = {"_a0 1", "_a1 'x"};
        for (int n = 4; n <= 12; ++n)
            body << QStringLiteral("_a%1 1").arg(n);
        Checked checked(cif(body + QStringList{"_b 1", "_a12 2"}));
        checked.report(4);
        checked.list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&checked.list));
        QTreeWidgetItem* item = checked.item(kind, line);
        QVERIFY(item);

        QSignalSpy marks(&checked.list, &QcbsErrorListView::requestHighlightLine);
        QSignalSpy help(&checked.list, &QcbsErrorListView::helpRequest);
        QPoint at = checked.list.visualItemRect(item).center();
        if (rightClickColumn < 0) {
            // As with a real mouse, the double click follows a click: the view acts only on a
            // double click on the item it saw pressed and released.
            QTest::mouseClick(checked.list.viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(checked.list.viewport(), Qt::LeftButton, {}, at);
        } else {
            const QHeaderView* header = checked.list.header();
            at.setX(header->sectionViewportPosition(rightClickColumn) +
                    header->sectionSize(rightClickColumn) / 2);
            QContextMenuEvent event(QContextMenuEvent::Mouse, at, checked.list.viewport()->mapToGlobal(at));
            QCoreApplication::sendEvent(checked.list.viewport(), &event);
        }
        QStringList seen;
        for (const QList<QVariant>& mark : marks)
            seen << QStringLiteral("%1 %2 %3").arg(mark[0].toInt()).arg(mark[1].toInt()).arg(mark[2].toInt());
        for (const QList<QVariant>& request : help)
            seen << request[0].toString();
        QCOMPARE(seen, emitted);
    }

    // A finding with a help page opens the page whose title names its code, and a code that no
    // page names opens none.
    void helpPage()
    {
        QMap<int, QString> named;
        const QDir docs(QStringLiteral(CIFWARD_DOCS_DIR));
        static const QRegularExpression code(QStringLiteral("\\b3\\d\\d\\b"));
        for (const QString& page : docs.entryList({QStringLiteral("cifward-1-*.html")})) {
            const QString title =
                QString::fromUtf8(readBytes(docs.filePath(page))).section("<title>", 1).section("</", 0, 0);
            for (const QRegularExpressionMatch& match : code.globalMatch(title))
                named[match.captured().toInt()] = "cifward/PortableHTML/" + page;
        }
        QVERIFY(named.size() > 25);
        for (int c = 295; c < 360; ++c)
            QCOMPARE(QcbsErrorListView::helpPage(c), named.value(c));
        QCOMPARE(QcbsErrorListView::helpPage(-302), QString());
    }
};

QTEST_MAIN(QcbsErrorListTest)
#include "QcbsErrorListTest.moc"
