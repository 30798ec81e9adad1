#include "Journal.h"

#include "GuiTestSupport.h"
#include "Logger.h"
#include "QcbsJournalListBox.h"

#include <QCompleter>
#include <QLineEdit>
#include <cstdio>

namespace {

struct KnownRow {
    const char* coden; // nullptr: the journal has none, and carries its number
    const char* name;
    bool discontinued;
};

struct FilterRow {
    const char* typed;
    QStringList shown;
    QStringList hidden;
    int count; // -1: not checked
};

// The journal of that name; 0 when the table has none.
int numberOf(const std::string& name)
{
    for (int n = 1; n <= Journal::count(); ++n)
        if (Journal(n).name() == name)
            return n;
    return 0;
}

// What the log's error channel received while `run` ran.
template <class Run> QString errorLog(Run run)
{
    FILE* capture = std::tmpfile();
    FILE* before = errorStream();
    setErrorStream(capture);
    run();
    setErrorStream(before);
    std::rewind(capture);
    char buffer[512] = {};
    const std::size_t read = std::fread(buffer, 1, sizeof buffer - 1, capture);
    std::fclose(capture);
    return QString::fromLatin1(buffer, static_cast<int>(read));
}

} // namespace

Q_DECLARE_METATYPE(KnownRow)
Q_DECLARE_METATYPE(FilterRow)

class JournalTest : public QObject {
    Q_OBJECT

private slots:
    // Each number reads back its own record, so a lookup off by one shows at once.
    void everyNumberFindsItsRecord()
    {
        QVERIFY(Journal::count() > 300);
        for (int n = 1; n <= Journal::count(); ++n) {
            const Journal journal(n);
            QCOMPARE(journal.number(), n);
            QCOMPARE(journal.coden().size(), std::size_t(6));
            QVERIFY(!journal.name().empty());
        }
    }

    void knownRecords_data()
    {
        addRows<KnownRow>({
            {"quoted, with CODEN", {"JACSAT", "J.Am.Chem.Soc.", false}},
            {"quoted, renamed series", {"ASBSDK", "Acta Crystallogr.,Sect.B:Struct.Sci.", false}},
            {"quoted, in no other source", {"CESCAC", "Chem.Eng.Sci.", false}},
            {"quoted, no CODEN", {nullptr, "Private Communication", false}},
            {"quoted proceedings", {nullptr, "Proc.10th Int.Winter...", false}},
            {"older series under its own CODEN", {"ACBCAR", "Acta Crystallogr. Sect. B", true}},
            {"CODEN from a CIF, dated to 1979",
             {"ZEKGAX", "Z. Kristallogr. Kristallgeom. Kristallphys. Kristallchem.", true}},
            {"COD journal, current", {nullptr, "Inorg. Chem.", false}},
        });
    }
    void knownRecords()
    {
        QFETCH(KnownRow, row);
        const int number = numberOf(row.name);
        QVERIFY2(number > 0, row.name);
        const Journal journal(number);
        QCOMPARE(QString::fromStdString(journal.coden()),
                 row.coden ? QString::fromLatin1(row.coden)
                           : QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0')));
        QCOMPARE(journal.discontinued(), row.discontinued);
    }

    void numberOutOfRange()
    {
        for (int number : {0, -1, Journal::count() + 1}) {
            int got = -1;
            bool discontinued = true;
            QString log = errorLog([&] {
                const Journal journal(number);
                QCOMPARE(journal.name(), std::string("Unknown"));
                QCOMPARE(journal.coden(), std::string("Unknown"));
                got = journal.number();
                discontinued = journal.discontinued();
            });
            QCOMPARE(got, 0);
            QVERIFY(!discontinued);
            QCOMPARE(log, QStringLiteral("ERROR: Journal::Journal: Invalid NLDC coden.\n"
                                         "ERROR: Journal::discontinued: Invalid NLDC coden.\n"));
        }
    }

    void filter_data()
    {
        addRows<FilterRow>({
            {"nothing typed", {"", {"J.Am.Chem.Soc.", "Zeolites"}, {}, Journal::count()}},
            {"without full stops or blanks", {"J Am Chem", {"J.Am.Chem.Soc."}, {"J. Am. Ceram. Soc."}, 1}},
            {"commas and a colon typed",
             {"Acta Crystallogr, Sect B",
              {"Acta Crystallogr.,Sect.B:Struct.Sci.", "Acta Crystallogr. Sect. B"},
              {"Acta Crystallogr. Sect. C"},
              2}},
            {"lower case",
             {"acta cryst", {"Acta Crystallogr.", "Acta Crystallogr. Sect. E"}, {"Acta Chem. Scand."}, 6}},
            {"the start, not the middle", {"(Chem", {"Chem. Ber."}, {"J.Am.Chem.Soc.", "Inorg. Chem."}, -1}},
            {"longer than the name",
             {"Nature Physical Sciences", {}, {"Nature", "Nature Physical Science"}, 0}},
            {"no such journal", {"Xyzzy", {}, {"Zeolites"}, 0}},
        });
    }
    void filter()
    {
        QFETCH(FilterRow, row);
        QcbsJournalListBox list;
        list.updateJournalList(QString::fromLatin1(row.typed));
        const QStringList shown = list.visibleNames();
        for (const QString& name : row.shown)
            QVERIFY2(shown.contains(name), qPrintable(name));
        for (const QString& name : row.hidden)
            QVERIFY2(!shown.contains(name), qPrintable(name));
        if (row.count >= 0)
            QCOMPARE(shown.size(), row.count);
    }

    // Typing narrows the list and the completion alike; choosing from the list fills the edit.
    void editAndListWorkAsOne()
    {
        QcbsJournalListBox list;
        QLineEdit edit;
        list.attach(&edit);
        QTest::keyClicks(&edit, QStringLiteral("Z Naturforsch"));
        QCOMPARE(list.visibleNames(), QStringList({"Z. Naturforsch.", "Z. Naturforsch., B: Chem. Sci."}));
        QCOMPARE(edit.completer()->model()->rowCount(), 2);
        QListWidgetItem* second =
            list.findItems(QStringLiteral("Z. Naturforsch., B: Chem. Sci."), Qt::MatchExactly).value(0);
        QVERIFY(second);
        emit list.itemClicked(second);
        QCOMPARE(edit.text(), second->text());
        QCOMPARE(list.visibleNames(), QStringList({second->text()}));
    }
};

QTEST_MAIN(JournalTest)
#include "JournalTest.moc"
