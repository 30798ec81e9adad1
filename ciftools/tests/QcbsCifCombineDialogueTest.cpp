#include "QcbsCifCombineDialogue.h"

#include "GuiTestSupport.h"
#include "QcbsRichTextEdit.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTextBlock>

namespace {

// Small files of COD's merge tests: two blocks (merge_1b), the same with a loop in each
// (merge_2b), a loop sharing one name with it (merge_3b); two blocks between a leading and a
// closing comment (cif_diff_001b); and a file of broken loops.
const QString oneB = QStringLiteral("corpus/cod/merge_1b.cif");
const QString twoB = QStringLiteral("corpus/cod/merge_2b.cif");
const QString threeB = QStringLiteral("corpus/cod/merge_3b.cif");
const QString commented = QStringLiteral("corpus/cod/cif_diff_001b.cif");
const QString broken = QStringLiteral("corpus/iucr-ciftest/syntax/ciftest9.cif");

// The merge run from the main window: the file and the line of the cursor, the template ("" for
// none set, "missing" for one that has gone), blocks of this file instead, the rows ticked (the
// template's one block is ticked already), replace; then the box shown or the warning in the
// dialog, and what the text holds after OK (unchanged when `present` is empty).
struct MergeCase {
    QString file;
    int line;
    QString templateFile;
    bool fromFile;
    QList<int> ticks;
    bool replace;
    QString box, warning;
    QStringList present, absent;
};

} // namespace

Q_DECLARE_METATYPE(MergeCase)

class QcbsCifCombineDialogueTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void mergeFromTheWindow_data()
    {
        const QString tag1 = QStringLiteral("_data_tag1                       'xyz now'\n");
        addRows<MergeCase>({
            {"the template's block into the cursor's",
             {oneB,
              2,
              threeB,
              false,
              {},
              false,
              "",
              "",
              {"data_merge\n_data_tag2                       abc\n_data_tag3                       "
               "xyz\nloop_\n"
               "_loop_tag1\n_loop_tag3\n10 20\n30 40\n40 60\n\ndata_merge2\n_data_tag1 \"xyz now\"\n"},
              {}}},
            {"another block of the file, keeping values",
             {oneB,
              6,
              threeB,
              true,
              {0},
              false,
              "",
              "",
              {tag1 + "_data_tag2                       1.02(3)\n", "_data_tag3                       xyz\n"},
              {"_data_tag2                       abc"}}},
            {"another block of the file, replacing values",
             {oneB,
              6,
              threeB,
              true,
              {0},
              true,
              "",
              "",
              {"_data_tag2                       abc\n"},
              {"1.02(3)"}}},
            {"a loop sharing a name is left out when keeping",
             {twoB,
              2,
              threeB,
              false,
              {},
              false,
              "",
              "",
              {"_loop_tag1\n_loop_tag2\n11 21\n"},
              {"_loop_tag3"}}},
            {"a loop sharing a name joins when replacing",
             {twoB,
              2,
              threeB,
              false,
              {},
              true,
              "",
              "",
              {"_loop_tag1\n_loop_tag2\n_loop_tag3\n10 21 20\n"},
              {}}},
            {"the closing comment stays at the end",
             {commented,
              14,
              oneB,
              false,
              {1},
              false,
              "",
              "",
              {"_tag_with_different_string_values 0.10\n" + tag1 +
               "_data_tag2                       1.02(3)\n"
               "_data_tag4                       'never mind'\n# Some more comments\n"},
              {}}},
            {"a template with errors is merged as read",
             {oneB,
              2,
              broken,
              false,
              {},
              false,
              "",
              "The template has",
              {"_d5\n_d6\n_d7\n_d8\nA B C D\n"},
              {}}},
            {"cursor before the first block", {commented, 1, oneB, false, {0}, false, "", "", {}, {}}},
            {"no template set",
             {oneB, 2, "", false, {}, false, "Error|No template file set in preferences", "", {}, {}}},
            {"template gone",
             {oneB,
              2,
              "missing",
              false,
              {},
              false,
              "Error|Could not open template file \"{missing}\"",
              "",
              {},
              {}}},
        });
    }
    void mergeFromTheWindow()
    {
        QFETCH(MergeCase, row);
        const QString missing = fx_.path(QStringLiteral("gone.cif"));
        ScriptedWindow* window = fx_.newWindow();
        QcbsMainWindow::preferences().templateFilename =
            row.templateFile == QLatin1String("missing") ? missing
            : row.templateFile.isEmpty()                 ? QString()
                                                         : sharedPath(row.templateFile);
        QVERIFY(window->fileOpen(sharedPath(row.file), false));
        QcbsRichTextEdit* text = window->editor();
        const QString original = text->toPlainText();
        text->setTextCursor(QTextCursor(text->document()->findBlockByNumber(row.line - 1)));
        window->combine();

        auto* dialog = window->findChild<QcbsCifCombineDialogue*>();
        if (!row.box.isEmpty()) {
            QVERIFY(!dialog);
            QCOMPARE(ScriptedWindow::shown.size(), 1);
            QCOMPARE(ScriptedWindow::shown.first().title + '|' + ScriptedWindow::shown.first().text,
                     QString(row.box).replace(QStringLiteral("{missing}"), missing));
            QCOMPARE(text->toPlainText(), original);
            return;
        }
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Cif Merge Dialog"));
        const QString warning = dialog->findChild<QLabel*>(QStringLiteral("sourceWarning"))->text();
        QVERIFY2(row.warning.isEmpty() ? warning.isEmpty() : warning.startsWith(row.warning),
                 qPrintable(warning));
        if (row.fromFile)
            dialog->findChild<QRadioButton*>(QStringLiteral("fileChoice"))->click();
        for (int tick : row.ticks)
            dialog->table()->item(tick, 0)->setCheckState(Qt::Checked);
        dialog->findChild<QCheckBox*>(QStringLiteral("replace"))->setChecked(row.replace);
        QPushButton* ok = nullptr;
        for (QPushButton* button : dialog->findChildren<QPushButton*>())
            if (button->text() == QLatin1String("OK"))
                ok = button;
        QCOMPARE(ok->isEnabled(), !row.present.isEmpty());
        ok->click();

        const QString after = text->toPlainText();
        if (row.present.isEmpty()) {
            QCOMPARE(after, original);
            return;
        }
        QVERIFY(!dialog->isVisible());
        for (const QString& part : row.present)
            QVERIFY2(after.contains(part), qPrintable(after));
        for (const QString& part : row.absent)
            QVERIFY2(!after.contains(part), qPrintable(part));
        // The text was checked again: the merged block reads back as one block among the same.
        QVERIFY(text->parsed());
        QCOMPARE(window->document()->block_count(), std::size_t(original.count(QStringLiteral("\ndata_")) +
                                                                (original.startsWith("data_") ? 1 : 0)));
    }
};

QTEST_MAIN(QcbsCifCombineDialogueTest)
#include "QcbsCifCombineDialogueTest.moc"
