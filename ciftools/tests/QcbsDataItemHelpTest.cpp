#include "Cif.h"
#include "GuiTestSupport.h"
#include "QcbsDataItemHelpButton.h"
#include "QcbsDataItemInfo.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsEditDataDialogue.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <fstream>

namespace {

HCifDictionaryPool coreDictionary()
{
    static QcbsDictionaryLoader loader;
    static const HCifDictionaryPool pool = [] {
        loader.setSearchDirectories({sharedPath(QStringLiteral("dict"))});
        return loader.load(QString());
    }();
    return pool;
}

HCifDataBlock corpusBlock(const QString& relative)
{
    HCif cif(new Cif(coreDictionary()));
    std::ifstream in(sharedPath(QStringLiteral("corpus/") + relative).toStdString(), std::ios::binary);
    cif->read(in);
    return cif->block_count() ? cif->block_handle(0) : HCifDataBlock();
}

void writeText(const QString& path, const QString& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

// The help for a name: what must show, in this order, and what must not show at all.
struct HelpCase {
    QString name;
    bool extras; // the installation's extra lists and notes for _exptl_crystal_colour
    QStringList inOrder;
    QStringList absent;
};

// The value dialog on the first block of a corpus file: the widget it offers, the value it starts
// from, what the user then types or picks, and the text it hands on ("" for nothing).
struct ValueCase {
    QString file, item;
    QString widget; // "combo", "line", "text", or "" for a dialog that only shows the value
    QString initial, typed, emitted, checkMessage;
};

} // namespace

Q_DECLARE_METATYPE(HelpCase)
Q_DECLARE_METATYPE(ValueCase)

class QcbsDataItemHelpTest : public QObject {
    Q_OBJECT
    IsolatedSettings settings_;

private slots:
    void initTestCase()
    {
        if (coreDictionary()->size() == 0)
            QSKIP("the core dictionary is not in ../shared/dict");
    }

    void itemHelp_data()
    {
        const QString definition = QStringLiteral("\nDefinition:\n\n");
        addRows<HelpCase>({
            {"enumeration, no range, no example",
             {"_symmetry_cell_setting",
              false,
              {"_symmetry_cell_setting" + definition, "The cell settings",
               "\n\nRecommended values:\n\ntriclinic\nmonoclinic\north", "hexagonal\ncubic\n"},
              {"range", "Example", "Extra info"}}},
            {"range with both limits, examples with details",
             {"_atom_site_attached_hydrogens",
              false,
              {definition, "\n\nRecommended range of values:\n\n0 to 8", "\n\nExample 1:\n\n2\nwater oxygen",
               "\n\nExample 3:\n\n4\nammonium nitrogen"},
              {"Recommended values:"}}},
            {"lower limit only",
             {"_cell_length_a", false, {"range of values:\n\nlower limit of 0.0"}, {"0.0 to"}}},
            {"upper limit only",
             {"_diffrn_standards_decay_%",
              false,
              {"range of values:\n\nupper limit of 100"},
              {"lower limit"}}},
            {"name in no dictionary",
             {"_cifward_made_up", false, {definition + "(not in dictionary)\n"}, {"Recommended", "Example"}}},
            {"the installation's extra values and notes",
             {"_Exptl_Crystal_Colour",
              true,
              {"The colour of the crystal.", "\n\nRecommended values:\n\npale yellow\ncolourless",
               "\nExtra info for this item:\n\nSeen in polarised light.", "\n\nExample 1:\n\ndark green"},
              {}}},
        });
    }
    void itemHelp()
    {
        QFETCH(HelpCase, row);
        QTemporaryDir prefs, help;
        if (row.extras) {
            writeText(prefs.filePath("choices_extra/_exptl_crystal_colour.txt"),
                      "pale yellow\n\ncolourless\n");
            writeText(help.filePath("info_extra/_exptl_crystal_colour.txt"), "Seen in polarised light.");
        }
        qputenv("CIFWARDPREFS", row.extras ? prefs.path().toLocal8Bit() : QByteArray());

        // The help opens as a user asks for it: through the button beside a field.
        QWidget owner;
        QPointer<QcbsDataItemInfo> shown;
        QcbsDataItemHelpButton button(row.name, &owner);
        connect(&button, &QcbsDataItemHelpButton::dataItemHelpRequested, this, [&](const QString& name) {
            shown = new QcbsDataItemInfo(name, coreDictionary(), help.path(), &owner);
        });
        QTest::mouseClick(&button, Qt::LeftButton);
        QVERIFY(shown);
        QCOMPARE(shown->dataItemName(), row.name);
        QVERIFY(shown->isReadOnly());

        const QString text = shown->toPlainText();
        qsizetype at = 0;
        for (const QString& part : row.inOrder) {
            const qsizetype found = text.indexOf(part, at);
            QVERIFY2(found >= 0,
                     qPrintable(QStringLiteral("missing or out of order: [%1] in\n%2").arg(part, text)));
            at = found + part.size();
        }
        for (const QString& part : row.absent)
            QVERIFY2(!text.contains(part), qPrintable(part));
        qunsetenv("CIFWARDPREFS");
    }

    void valueDialog_data()
    {
        const QString longTitle = QStringLiteral("cod/2016470-long-title.cif");
        addRows<ValueCase>({
            {"current value found in any case",
             {longTitle, "_symmetry_cell_setting", "combo", "tetragonal", "monoclinic",
              "_symmetry_cell_setting           monoclinic\n", ""}},
            {"item the block lacks starts unknown",
             {longTitle, "_exptl_crystal_colour_primary", "combo", "?", "?",
              "_exptl_crystal_colour_primary    ?\n", ""}},
            {"a value outside the list is kept, with the check's message",
             {longTitle, "_exptl_absorpt_correction_type", "combo", "none", "cubic",
              "_exptl_absorpt_correction_type   cubic\n",
              "Data value is not in dictionary enumeration list : cubic"}},
            {"value with a blank is quoted",
             {longTitle, "_exptl_crystal_colour", "line", "colourless", "pale yellow",
              "_exptl_crystal_colour            'pale yellow'\n", ""}},
            {"value with an apostrophe and a blank takes double quotes",
             {longTitle, "_exptl_crystal_colour", "line", "colourless", "it's red",
              "_exptl_crystal_colour            \"it's red\"\n", ""}},
            {"number out of range",
             {longTitle, "_cell_length_a", "line", "", "-1.5", "_cell_length_a                   -1.5\n",
              "Data value should be greater than a defined limit : -1.5"}},
            {"text field stays a text field",
             {longTitle, "_publ_section_title", "text", "", "Two\nlines\n",
              "_publ_section_title" + QString(14, ' ') + "\n;Two\nlines\n;\n", ""}},
            {"name in no dictionary", {longTitle, "_cifward_note", "line", "", "x", "_cifward_note", ""}},
            {"empty value sends nothing",
             {longTitle, "_exptl_crystal_colour", "line", "colourless", "", "", ""}},
            {"column of a loop is only shown", {longTitle, "_atom_site_label", "", "", "", "", ""}},
        });
    }
    void valueDialog()
    {
        QFETCH(ValueCase, row);
        const HCifDataBlock block = corpusBlock(row.file);
        QVERIFY(block);
        QcbsEditDataDialogue dialog(block, row.item, 80);
        QSignalSpy sent(&dialog, &QcbsEditDataDialogue::setDataItemTextRequest);
        auto* combo = dialog.findChild<QComboBox*>(QStringLiteral("valueCombo"));
        auto* line = dialog.findChild<QLineEdit*>(QStringLiteral("valueEdit"));
        auto* text = dialog.findChild<QPlainTextEdit*>(QStringLiteral("valueText"));
        QCOMPARE(dialog.maySet(), !row.widget.isEmpty());
        if (!dialog.maySet()) {
            const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
            QCOMPARE(buttons.size(), 1);
            QCOMPARE(buttons.first()->text(), QStringLiteral("Close"));
            return;
        }
        QCOMPARE(QString(combo ? "combo" : line ? "line" : text ? "text" : ""), row.widget);
        if (combo) {
            QCOMPARE(combo->itemText(0), QStringLiteral("?"));
            QCOMPARE(combo->itemText(combo->count() - 1), QStringLiteral("."));
            QCOMPARE(combo->currentText(), row.initial);
            combo->setEditText(row.typed);
        } else if (line) {
            if (!row.initial.isEmpty())
                QCOMPARE(line->text(), row.initial);
            line->setText(row.typed);
        } else {
            text->setPlainText(row.typed);
        }
        QCOMPARE(dialog.findChild<QLabel*>(QStringLiteral("checkResult"))->text(), row.checkMessage);

        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            if (button->text() == QLatin1String("OK"))
                button->click();
        if (row.emitted.isEmpty()) {
            QCOMPARE(sent.size(), 0);
            return;
        }
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent.first().at(0).toString(), QStringLiteral("data_2016470"));
        QCOMPARE(sent.first().at(1).toString(), row.item);
        QVERIFY2(sent.first().at(2).toString().startsWith(row.emitted),
                 qPrintable(sent.first().at(2).toString()));
        // What went out reads back as the value typed.
        Cif back(coreDictionary());
        std::istringstream in("data_x\n" + sent.first().at(2).toString().toStdString());
        back.read(in);
        QCOMPARE(QString::fromStdString(back.block(0).first_value(row.item.toStdString())), row.typed);
    }
};

QTEST_MAIN(QcbsDataItemHelpTest)
#include "QcbsDataItemHelpTest.moc"
