#include "GuiTestSupport.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QtTest>

namespace {

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
        QTest::newRow("data heading") << "data_block" << false << "4444444444";
        QTest::newRow("loop keyword") << "loop_" << false << "55555";
        QTest::newRow("custom name without dictionary") << "_cell_length_a 5" << false << "7777777777777700";
        QTest::newRow("core name by dictionary") << "_cell_length_a 5" << true << "6666666666666600";
        QTest::newRow("name with full stop") << "see _cell_length_a." << true << "0000666666666666666";
        QTest::newRow("unknown name with dictionary") << "_my_own_item x" << true << "77777777777700";
        QTest::newRow("text block") << ";\ntext _x\n;" << false << "0|3333333|0";
        QTest::newRow("quote leaves names uncoloured") << "_a 'open\n_b x" << false << "77000000|0000";
        QTest::newRow("Greek escape") << "\\a" << false << "98";
        QTest::newRow("escape in a text block") << ";\nx \\b\n;" << false << "0|3398|0";
        QTest::newRow("subscript") << "value~sub~" << false << "00000cbbbc";
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

private:
    IsolatedSettings settings_;
    HCifDictionaryPool dictionary_;
};

QTEST_MAIN(QcbsSyntaxHighlighterTest)
#include "QcbsSyntaxHighlighterTest.moc"
