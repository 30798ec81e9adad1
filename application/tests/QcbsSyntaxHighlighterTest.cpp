#include "GuiTestSupport.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QFile>
#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QtTest>

namespace {

// Counts the lines the highlighter colours, to show how far a keystroke reaches.
class CountingHighlighter : public QcbsSyntaxHighlighter_CIF {
public:
    using QcbsSyntaxHighlighter_CIF::QcbsSyntaxHighlighter_CIF;
    int calls = 0;

protected:
    void highlightBlock(const QString& text) override
    {
        ++calls;
        QcbsSyntaxHighlighter_CIF::highlightBlock(text);
    }
};

// One character per character of the line: the format id in base 16 ('c' is 12, the markers).
QString formatCodes(const QTextBlock& block)
{
    QString codes;
    for (int i = 0; i < block.text().size(); ++i) {
        const int id = QcbsSyntaxHighlighter_CIF::formatIdAt(block, i);
        codes += id < 0 ? QChar(u'?') : QString::number(id, 16).at(0);
    }
    return codes;
}

// A highlighter colours a document it is given on the next turn of the event loop, and takes no
// edits before that.
void settle()
{
    QCoreApplication::processEvents();
}

HCifDictionaryPool coreDictionary()
{
    QcbsDictionaryLoader loader;
    loader.setSearchDirectories({sharedPath(QStringLiteral("dict"))});
    return loader.load(QString());
}

} // namespace

class QcbsSyntaxHighlighterTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (QFile::exists(sharedPath(QStringLiteral("dict/cif_core.dic"))))
            dictionary_ = coreDictionary();
    }

    void colours_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("withDictionary");
        // The codes of every line, joined by '|'.
        QTest::addColumn<QString>("codes");

        QTest::newRow("hash inside a word") << "x#y" << false << "000";
        QTest::newRow("hash after a blank") << "x #y" << false << "0011";
        QTest::newRow("comment at line start") << "# loop_ data_x" << false << "11111111111111";
        QTest::newRow("data heading") << "data_block" << false << "4444444444";
        QTest::newRow("data heading is case-sensitive") << "DATA_x" << false << "000000";
        QTest::newRow("loop keyword") << "loop_" << false << "55555";
        QTest::newRow("LOOP_ is plain") << "LOOP_" << false << "00000";
        QTest::newRow("loop_ with more letters is plain") << "loop_x" << false << "000000";
        QTest::newRow("custom name without dictionary") << "_cell_length_a 5" << false << "7777777777777700";
        QTest::newRow("sampler core name") << "_core_item_a 'a string'" << false << "66666666666600000000000";
        QTest::newRow("core name by dictionary") << "_cell_length_a 5" << true << "6666666666666600";
        QTest::newRow("name with full stop") << "see _cell_length_a." << true << "0000666666666666666";
        QTest::newRow("unknown name with dictionary") << "_my_own_item x" << true << "77777777777700";
        QTest::newRow("underscore inside a word") << "a_b" << false << "000";
        QTest::newRow("apostrophe in a word") << "don't" << false << "00000";
        QTest::newRow("text block") << ";\ntext _x\n;" << false << "0|3333333|0";
        QTest::newRow("text block after blanks") << "  ;\nab\n;" << false << "000|33|0";
        QTest::newRow("semicolon inside a line") << "a ; _b" << false << "000077";
        QTest::newRow("quote leaves names uncoloured") << "_a 'open\n_b x" << false << "77000000|0000";
        QTest::newRow("Greek escape") << "\\a" << false << "98";
        QTest::newRow("doubled backslash is no escape") << "\\\\a" << false << "000";
        QTest::newRow("ring escape is one code") << "\\%A" << false << "999";
        QTest::newRow("accent escape") << "\\'e x" << false << "99900";
        QTest::newRow("escape symbol not a letter") << "\\%" << false << "99";
        QTest::newRow("no escape in a comment") << "# \\a" << false << "1111";
        QTest::newRow("escape in a text block") << ";\nx \\b\n;" << false << "0|3398|0";
        QTest::newRow("subscript") << "value~sub~" << false << "00000cbbbc";
        QTest::newRow("superscript closes at line end") << "x^2\ny" << false << "0ca|0";
        QTest::newRow("superscript carries in text block")
            << ";\nx^2 y\nz^ w\n;" << false << "0|3caaa|ac33|0";
        QTest::newRow("backslash caret is an accent, not a marker") << "a\\^b" << false << "0999";
    }
    void colours()
    {
        QFETCH(QString, text);
        QFETCH(bool, withDictionary);
        QFETCH(QString, codes);
        if (withDictionary && !dictionary_)
            QSKIP("The core dictionary is not in ../shared/dict");

        QTextDocument document(text);
        QcbsSyntaxHighlighter_CIF highlighter(&document);
        if (withDictionary)
            highlighter.setDictionary(dictionary_);
        settle();
        QStringList lines;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
            lines << formatCodes(block);
        QCOMPARE(lines.join(u'|'), codes);
    }

    void endStates_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<int>>("states");

        QTest::newRow("plain lines end in 0") << "_a 1\n_b 'x'" << QList<int>{0, 0};
        QTest::newRow("open quote runs on") << "_a 'don't\nx'" << QList<int>{9, 0};
        QTest::newRow("apostrophe closes only before white space") << "'don't' x" << QList<int>{0};
        QTest::newRow("quote after a letter opens nothing") << "x' y" << QList<int>{0};
        QTest::newRow("text block runs on") << ";\na\n;" << QList<int>{12, 12, 0};
        QTest::newRow("comment ends with its line") << "# 'x\n_a" << QList<int>{0, 0};
        // The open superscript is carried in the state inside a text block, and only there.
        QTest::newRow("marker carried in text block") << ";\na^b\nc" << QList<int>{12, 12 | 256, 12 | 256};
        QTest::newRow("semicolon line clears markers") << ";\na~b\n;" << QList<int>{12, 12 | 512, 0};
    }
    void endStates()
    {
        QFETCH(QString, text);
        QFETCH(QList<int>, states);
        QTextDocument document(text);
        QcbsSyntaxHighlighter_CIF highlighter(&document);
        settle();
        QList<int> actual;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
            actual << block.userState();
        QCOMPARE(actual, states);
    }

    void keystrokeRecoloursOnlyWhatChanges_data()
    {
        QTest::addColumn<QString>("insert");
        QTest::addColumn<int>("recoloured");

        // 100,000 lines "_item_n value", with a quoted value on every 10th line. Line 50,001 (from 0)
        // is edited just before its value.
        QTest::newRow("a letter inside a value") << "x" << 1;
        // The quote stays open through lines 50,001 to 50,009 and is closed by the quoted value on line
        // 50,010, which then ends in the state it ended in before: nothing after it is coloured again.
        QTest::newRow("opening a quote") << "'" << 10;
    }
    void keystrokeRecoloursOnlyWhatChanges()
    {
        QFETCH(QString, insert);
        QFETCH(int, recoloured);

        QString text;
        const int lines = 100000;
        for (int i = 0; i < lines; ++i)
            text += QStringLiteral("_item_%1 %2\n")
                        .arg(i)
                        .arg(i % 10 == 0 ? QStringLiteral("'q; x' ;") : QStringLiteral("value"));
        QTextDocument document(text);
        // A document reports its edits once it has a layout; the editor's is this one.
        document.setDocumentLayout(new QPlainTextDocumentLayout(&document));
        CountingHighlighter highlighter(&document);
        settle();
        QCOMPARE(highlighter.calls, lines + 1);

        highlighter.calls = 0;
        const QTextBlock block = document.findBlockByNumber(50001);
        QTextCursor cursor(block);
        cursor.setPosition(block.position() + block.text().indexOf(u' ') + 1);
        cursor.insertText(insert);
        QCOMPARE(highlighter.calls, recoloured);
    }

    void hiddenMarkersKeepTheText()
    {
        const QString text = QStringLiteral("x^2^ \\a y~i~");
        QTextDocument document(text);
        QcbsSyntaxHighlighter_CIF highlighter(&document);
        highlighter.setRemoveMarkers(true);
        settle();
        const QTextBlock block = document.begin();
        QCOMPARE(block.text(), text);
        QStringList hidden;
        for (const QTextLayout::FormatRange& range : block.layout()->formats())
            if (range.format.boolProperty(QcbsSyntaxHighlighter_CIF::HiddenProperty))
                hidden << text.mid(range.start, range.length);
        // The markers inside the line and the escape's backslash; the last marker of the line stays.
        QCOMPARE(hidden, (QStringList{"^", "^", "\\", "~"}));
        highlighter.setRemoveMarkers(false);
        for (const QTextLayout::FormatRange& range : block.layout()->formats())
            QVERIFY(!range.format.boolProperty(QcbsSyntaxHighlighter_CIF::HiddenProperty));
    }

    void stylesReachTheFormats()
    {
        QTextDocument document(QStringLiteral("data_x"));
        QcbsSyntaxHighlighter_CIF highlighter(&document);
        QcbsStyles styles = QcbsStyleStore::shipped(QcbsStyleStore::fixedWidthBase());
        highlighter.applyStyles(styles);
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Type).foreground().color(),
                 QColor(Qt::red));
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::String).foreground().color(),
                 QColor(0, 85, 0));
        QCOMPARE(highlighter.styleFormat(99).foreground().color(), QColor(Qt::black));
        // Courier with the markers shown keeps sub- and superscripts on the line, for the columns.
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Superscript).verticalAlignment(),
                 QTextCharFormat::AlignNormal);
        highlighter.setRemoveMarkers(true);
        highlighter.applyStyles(styles);
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Superscript).verticalAlignment(),
                 QTextCharFormat::AlignSuperScript);
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Subscript).verticalAlignment(),
                 QTextCharFormat::AlignSubScript);

        const int before = highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Comment).font().pointSize();
        highlighter.setFont(-4);
        QCOMPARE(highlighter.styleFormat(QcbsSyntaxHighlighter_CIF::Comment).font().pointSize(), before - 4);
        QCOMPARE(QcbsSyntaxHighlighter_CIF::formatIdForStyle(QStringLiteral("Keyword")), 5);
        QCOMPARE(QcbsSyntaxHighlighter_CIF::formatIdForStyle(QStringLiteral("NoSuchStyle")), 0);
    }

    // A real file with the real dictionary, end to end: each kind of line starts in its colour.
    void corpusFileColoursHeadingsAndNames()
    {
        QFile file(sharedPath(QStringLiteral("corpus/cod/1000026-MgB2.cif")));
        if (!dictionary_ || !file.open(QIODevice::ReadOnly))
            QSKIP("The COD corpus or the core dictionary is not in ../shared");
        QTextDocument document(QString::fromLatin1(file.readAll()));
        QcbsSyntaxHighlighter_CIF highlighter(&document);
        highlighter.setDictionary(dictionary_);
        settle();
        // The first character's colour of each kind of line, against what the line is.
        QMap<QString, int> agree, lines;
        const auto count = [&](const QString& kind, bool is, bool coloured) {
            lines[kind] += is;
            agree[kind] += is && coloured;
        };
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            const QString text = block.text();
            const int first = QcbsSyntaxHighlighter_CIF::formatIdAt(block, 0);
            count("heading", text.startsWith(QLatin1String("data_")),
                  first == QcbsSyntaxHighlighter_CIF::Type);
            count("loop", text.startsWith(QLatin1String("loop_")),
                  first == QcbsSyntaxHighlighter_CIF::Keyword);
            count("core", text.startsWith(QLatin1String("_cell_length_")),
                  first == QcbsSyntaxHighlighter_CIF::CoreDataItem);
            count("custom", text.startsWith(QLatin1String("_cod_")),
                  first == QcbsSyntaxHighlighter_CIF::CustomDataItem);
        }
        for (const char* kind : {"heading", "loop", "core", "custom"}) {
            QVERIFY2(lines[kind] > 0, qPrintable(kind));
            QCOMPARE(agree[kind], lines[kind]);
        }
    }

private:
    IsolatedSettings settings_;
    HCifDictionaryPool dictionary_;
};

QTEST_MAIN(QcbsSyntaxHighlighterTest)
#include "QcbsSyntaxHighlighterTest.moc"
