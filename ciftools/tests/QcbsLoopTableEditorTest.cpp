#include "GuiTestSupport.h"
#include "QcbsCifBoxViewDialogImpl.h"
#include "QcbsLoopTable.h"
#include "QcbsLoopTableEditorImpl.h"
#include "QcbsLoopTableModel.h"
#include "QcbsRichTextEdit.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTextBlock>

namespace {

const QString limits = QStringLiteral("corpus/cod/2001253-not-numeric-limits.cif");
const QString loops = QStringLiteral("corpus/iucr-ciftest/syntax/ciftest9.cif");
// Lines of "loop_" in those files: the atom sites (8 columns, the thermal displacement type
// refused on 36 rows), the anisotropic labels (2 columns), the symmetry (1 column), and a loop of
// 3 names and 10 values.
constexpr int atomSites = 125, anisoLabels = 192, symmetry = 114, raggedLoop = 24;

// The loop editor opened on the loop at `line`, the user's steps in it, and what shows after:
// the summary under the table, the current cell, the colour of a cell; then what the text holds
// after OK (or, without "ok", that it is unchanged), and a finding that the next check no longer
// reports.
struct LoopCase {
    QString file;
    int line;
    QStringList steps;
    QString summary, current, colour;
    QStringList present, absent;
    QString findingGone;
};

void select(QcbsLoopTable* table, int row, int column, QItemSelectionModel::SelectionFlags how)
{
    table->selectionModel()->select(table->model()->index(row, column), how);
    table->setCurrentIndex(table->model()->index(row, column));
}

void press(QcbsLoopTableEditorImpl* editor, const char* button)
{
    editor->findChild<QPushButton*>(QLatin1String(button))->click();
}

void run(QcbsLoopTableEditorImpl* editor, const QString& step)
{
    QcbsLoopTable* table = editor->table();
    const QStringList w = step.split(QLatin1Char(' '));
    const auto n = [&w](int i) { return w.at(i).toInt(); };
    const auto clearSelect = QItemSelectionModel::ClearAndSelect;
    if (w[0] == QLatin1String("set")) {
        QString text = w.mid(3).join(QLatin1Char(' '));
        table->model()->setData(table->model()->index(n(1), n(2)), text.replace(QStringLiteral("\\n"), "\n"));
    } else if (w[0] == QLatin1String("insert")) {
        select(table, n(1), n(2), clearSelect);
        press(editor, "insertCellButton");
    } else if (w[0] == QLatin1String("delete")) {
        select(table, n(1), n(2), clearSelect);
        press(editor, "deleteCellButton");
    } else if (w[0] == QLatin1String("delrow")) {
        select(table, n(1), 0, clearSelect);
        press(editor, "deleteRowBox");
    } else if (w[0] == QLatin1String("delcol")) {
        select(table, 0, n(1), clearSelect);
        press(editor, "deleteColumnButton");
    } else if (w[0] == QLatin1String("newrow")) {
        press(editor, "newRowButton");
    } else if (w[0] == QLatin1String("newcol")) {
        // The name comes through the chooser, typed as a user would.
        press(editor, "newColumnButton");
        auto* chooser = editor->findChild<QcbsCifBoxViewDialogImpl*>();
        QVERIFY(chooser);
        chooser->setText(w[1]);
        chooser->slotOK();
    } else if (w[0] == QLatin1String("movecol")) {
        table->horizontalHeader()->moveSection(n(1), n(2));
    } else if (w[0] == QLatin1String("moverow")) {
        table->verticalHeader()->moveSection(n(1), n(2));
    } else if (w[0] == QLatin1String("next")) {
        press(editor, "nextFailingButton");
    } else if (w[0] == QLatin1String("ok")) {
        press(editor, "okButton");
    } else {
        QFAIL(qPrintable(step));
    }
}

} // namespace

Q_DECLARE_METATYPE(LoopCase)

class QcbsLoopTableEditorTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void editLoop_data()
    {
        addRows<LoopCase>({
            {"a refused value mended",
             {limits,
              atomSites,
              {"set 0 4 Uiso", "ok"},
              "58 rows, 8 columns; 35 cells fail their check",
              "",
              "",
              {"S(1a) 0.85530(10) 0.1982(2) 0.1467(2) Uiso ? ? S"},
              {"S(1a) 0.85530(10) 0.1982(2) 0.1467(2) Beq"},
              ""}},
            {"the next refused value, and Cancel",
             {limits, atomSites, {"next", "next"}, "36 cells fail", "1,4", "", {}, {}, ""}},
            {"unknown stands out", {limits, atomSites, {"set 2 1 ?"}, "", "", "lightblue", {}, {}, ""}},
            {"inapplicable stands out",
             {limits, atomSites, {"set 2 1 ."}, "", "", "lightyellow", {}, {}, ""}},
            {"a cleared cell goes back",
             {limits, atomSites, {"set 2 1 ?", "set 2 1 "}, "", "", "none", {}, {}, ""}},
            {"quoting and text fields",
             {limits,
              anisoLabels,
              {"set 0 0 S 1a", "set 1 1 two\\nlines", "ok"},
              "",
              "",
              "",
              {"'S 1a' S\nC(2a)\n;two\nlines\n;\n"},
              {"S(1a) S"},
              ""}},
            {"a cell inserted and deleted again",
             {limits,
              anisoLabels,
              {"insert 0 1", "delete 0 1", "ok"},
              "36 rows, 2 columns",
              "",
              "",
              {"_atom_site_aniso_type_symbol\nS(1a) S\nC(2a) C\n"},
              {"''"},
              ""}},
            {"a cell inserted moves the rest on",
             {limits,
              anisoLabels,
              {"insert 0 1", "ok"},
              "37 rows, 2 columns",
              "",
              "",
              {"S(1a) ''\nS C(2a)\nC C(3a)\n"},
              {},
              ""}},
            {"a new column named in the chooser, and a new row",
             {limits,
              symmetry,
              {"newcol _symmetry_equiv_pos_site_id", "set 0 1 1", "newrow", "set 4 0 x,y,-z", "set 4 1 5",
               "ok"},
              "5 rows, 2 columns",
              "",
              "",
              {"_symmetry_equiv_pos_site_id\nx,y,z 1\n", "x,y,-z 5\n"},
              {},
              ""}},
            {"rows and columns deleted",
             {limits,
              anisoLabels,
              {"delrow 0", "delcol 1", "ok"},
              "35 rows, 1 column",
              "",
              "",
              {"loop_\n_atom_site_aniso_label\nC(2a)\n"},
              {"_atom_site_aniso_label\nS(1a)", "_atom_site_aniso_type_symbol"},
              ""}},
            {"a column and a row dragged",
             {limits,
              anisoLabels,
              {"movecol 1 0", "moverow 0 2", "ok"},
              "",
              "",
              "",
              {"_atom_site_aniso_type_symbol\n_atom_site_aniso_label\nC C(2a)\nC C(3a)\nS S(1a)\n"},
              {},
              ""}},
            {"a loop with values missing from its last row",
             {loops,
              raggedLoop,
              {"delete 3 0", "ok"},
              "3 rows, 3 columns",
              "",
              "",
              {"loop_\n_a1\n_a2\n_a3\n0 1 2\n3 4 5\n6 7 8\n\n# No loop header"},
              {},
              "Too many or too few"}},
            {"no loop at the cursor", {limits, 15, {}, "", "", "", {}, {}, ""}},
            // A line below zero: a new loop, made at that line.
            {"a new loop",
             {limits,
              -111,
              {"newcol _publ_manuscript_incl_extra_item", "newrow", "set 0 0 _cell_volume", "ok"},
              "1 row, 1 column",
              "",
              "",
              {"loop_\n_publ_manuscript_incl_extra_item\n'_cell_volume'\n_[local]_cod_data_source_file"},
              {},
              ""}},
        });
    }
    void editLoop()
    {
        QFETCH(LoopCase, row);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(sharedPath(row.file), false));
        const QString original = window->editor()->toPlainText();
        QcbsRichTextEdit* text = window->editor();
        text->setTextCursor(QTextCursor(text->document()->findBlockByNumber(std::abs(row.line) - 1)));
        if (row.line < 0)
            window->loopNew();
        else
            window->loopEd();
        auto* editor = window->findChild<QcbsLoopTableEditorImpl*>();
        if (row.steps.isEmpty()) {
            QVERIFY(!editor);
            QCOMPARE(ScriptedWindow::shown.size(), 1);
            QCOMPARE(ScriptedWindow::shown.first().title, QStringLiteral("Edit Loop"));
            QCOMPARE(text->toPlainText(), original);
            return;
        }
        QVERIFY(editor && editor->isVisible());
        if (row.file == loops)
            QVERIFY2(editor->summary().contains("the last row lacks 2 values"),
                     qPrintable(editor->summary()));
        for (const QString& step : row.steps) {
            if (step == QLatin1String("ok"))
                QVERIFY2(editor->summary().contains(row.summary), qPrintable(editor->summary()));
            run(editor, step);
            if (QTest::currentTestFailed())
                return;
        }
        if (!row.steps.contains(QStringLiteral("ok"))) {
            QVERIFY2(editor->summary().contains(row.summary), qPrintable(editor->summary()));
            QcbsLoopTable* table = editor->table();
            if (!row.current.isEmpty())
                QCOMPARE(QStringLiteral("%1,%2")
                             .arg(table->currentIndex().row())
                             .arg(table->currentIndex().column()),
                         row.current);
            if (!row.colour.isEmpty()) {
                const QVariant back = table->model()->index(2, 1).data(Qt::BackgroundRole);
                QCOMPARE(back.isValid() ? back.value<QColor>() : QColor(),
                         row.colour == QLatin1String("none") ? QColor() : QColor(row.colour));
            }
            press(editor, "cancelButton");
            QCOMPARE(text->toPlainText(), original);
            return;
        }
        QVERIFY(!editor->isVisible());
        const QString after = text->toPlainText();
        for (const QString& part : row.present)
            QVERIFY2(after.contains(part), qPrintable(part));
        for (const QString& part : row.absent)
            QVERIFY2(!after.contains(part), qPrintable(part));
        // The text was checked again at once; nothing but the loop changed.
        QVERIFY(text->parsed());
        const auto before = [&row](const QString& all) {
            return all.split('\n').mid(0, std::abs(row.line) - 1);
        };
        QCOMPARE(before(after), before(original));
        if (!row.findingGone.isEmpty())
            for (const CifError& finding : *window->document()->errors())
                QVERIFY2(!(QString::fromStdString(finding.message()).contains(row.findingGone) &&
                           finding.line == row.line),
                         finding.text().c_str());
    }
};

QTEST_MAIN(QcbsLoopTableEditorTest)
#include "QcbsLoopTableEditorTest.moc"
