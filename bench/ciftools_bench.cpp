// The CIF tools on real files: the box view opening a block with the core dictionary and being
// rebuilt after a check; the loop editor on the largest loop of 4hir.cif (open, a cell edit, OK
// back into the editor); Replace All of a common word in 4hir.cif. Each has a peer measured in
// the same run: the check that a rebuild follows, a QTableWidget filled with the same loop, and
// Qt's plain text editor making the same replacement.
//
// Arguments: the benchmark's own. The files come from the shared corpus beside the repository.

#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsCifBoxItem.h"
#include "QcbsCifBoxView.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsLoopTable.h"
#include "QcbsLoopTableEditorImpl.h"
#include "QcbsLoopTableModel.h"
#include "QcbsMainWindow.h"
#include "QcbsReplaceDialog.h"
#include "QcbsRichTextEdit.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <benchmark/benchmark.h>
#include <sstream>

namespace {

const QString corpus = QStringLiteral(CIFWARD_SHARED_DIR "/corpus/");
const QString bigFile = corpus + QStringLiteral("iucr-ciftest/real/4hir.cif");
const QString smallFile = corpus + QStringLiteral("cod/2001253-not-numeric-limits.cif");

QString readText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

HCifDictionaryPool& dictionary()
{
    static HCifDictionaryPool pool = [] {
        QcbsDictionaryLoader loader;
        loader.setSearchDirectories({QStringLiteral(CIFWARD_SHARED_DIR "/dict")});
        return loader.load(QString());
    }();
    return pool;
}

HCif check(const QString& text)
{
    HCif cif(new Cif(dictionary()));
    std::istringstream in(text.toStdString());
    cif->read(in);
    return cif;
}

void paint(QWidget* widget)
{
    widget->repaint();
    QCoreApplication::processEvents();
}

// The first data name of the loop with the most values in the file's first block.
std::string largestLoop(const Cif& cif)
{
    std::string best;
    std::size_t most = 0;
    for (const HCifLoop& loop : cif.block(0).loops()) {
        const std::size_t values = loop->count() * cif.block(0).item(loop->names().front())->value_count();
        if (values > most) {
            most = values;
            best = loop->names().front();
        }
    }
    return best;
}

// A block opened, then every one of its categories: what a user sees of the whole dictionary.
void boxViewOpenBlock(benchmark::State& state, const QString& path)
{
    const HCif cif = check(readText(path));
    QcbsCifBoxView view;
    view.resize(400, 700);
    view.show();
    int names = 0;
    for (auto _ : state) {
        view.setCif(cif);
        auto* block = static_cast<QcbsCifBoxItem*>(view.topLevelItem(0));
        block->setExpanded(true);
        names = 0;
        for (int i = 0; i < block->childCount(); ++i) {
            block->child(i)->setExpanded(true);
            names += block->child(i)->childCount();
        }
        paint(&view);
    }
    state.counters["names"] = names;
}

// What a check costs, and what rebuilding the box view adds to it.
void checkOnly(benchmark::State& state, const QString& path)
{
    const QString text = readText(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(check(text));
}

void boxViewRebuild(benchmark::State& state, const QString& path)
{
    const HCif cif = check(readText(path));
    QcbsCifBoxView view;
    view.show();
    for (auto _ : state) {
        view.setCif(cif);
        paint(&view);
    }
}

void loopEditorOpen(benchmark::State& state)
{
    const HCif cif = check(readText(bigFile));
    const QString name = QString::fromStdString(largestLoop(*cif));
    for (auto _ : state) {
        QcbsLoopTableEditorImpl editor(cif, QString(), 80);
        if (editor.setLoop(name, cif->block_handle(0)))
            state.SkipWithError("the loop did not open");
        editor.show();
        paint(&editor);
        state.counters["cells"] =
            double(editor.table()->model()->rowCount()) * editor.table()->model()->columnCount();
        state.PauseTiming();
        editor.close();
        state.ResumeTiming();
    }
}

// Qt's own table widget holding the same loop, an item per cell: the road not taken.
void tableWidgetOpen(benchmark::State& state)
{
    const HCif cif = check(readText(bigFile));
    std::vector<std::string> names;
    cif->block(0).loop_names(largestLoop(*cif), names);
    for (auto _ : state) {
        QTableWidget table;
        const int rows = int(cif->block(0).item(names.front())->value_count());
        table.setRowCount(rows);
        table.setColumnCount(int(names.size()));
        for (int c = 0; c < int(names.size()); ++c) {
            const HCifDataItem item = cif->block(0).item(names[std::size_t(c)]);
            for (int r = 0; r < rows; ++r)
                table.setItem(r, c,
                              new QTableWidgetItem(QString::fromStdString(item->value(std::size_t(r)))));
        }
        table.show();
        paint(&table);
    }
}

void loopEditorCellEdit(benchmark::State& state)
{
    const HCif cif = check(readText(bigFile));
    QcbsLoopTableEditorImpl editor(cif, QString(), 80);
    editor.setLoop(QString::fromStdString(largestLoop(*cif)), cif->block_handle(0));
    editor.show();
    paint(&editor);
    QAbstractItemModel* model = editor.table()->model();
    const QModelIndex cell = model->index(model->rowCount() / 2, 9);
    editor.table()->scrollTo(cell);
    paint(&editor);
    bool flip = false;
    for (auto _ : state) {
        model->setData(cell, flip ? QStringLiteral("1.000") : QStringLiteral("-2.5"));
        flip = !flip;
        paint(&editor);
    }
}

// OK: the loop written back through the writer, then pasted over the old loop in the editor of a
// main window holding the file, which checks the text again.
void loopEditorOk(benchmark::State& state)
{
    HQcbsAppState appState(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    auto* window = new QcbsMainWindow(appState);
    window->resize(1000, 760);
    window->show();
    window->loadFile(bigFile, true, false);
    const QString text = window->editor()->toPlainText();
    // The atom list's "loop_" is the line before its first name.
    const int loopLine =
        int(text.left(text.indexOf(QStringLiteral("\n_atom_site.label_seq_id"))).count('\n'));
    for (auto _ : state) {
        state.PauseTiming();
        window->editor()->setText(text);
        window->reparse();
        window->editor()->setTextCursor(
            QTextCursor(window->editor()->document()->findBlockByNumber(loopLine)));
        window->loopEd();
        auto* editor = window->findChild<QcbsLoopTableEditorImpl*>();
        if (!editor) {
            state.SkipWithError("no loop editor");
            break;
        }
        paint(window);
        state.ResumeTiming();
        editor->slotOK();
        paint(window);
    }
    window->editor()->document()->setModified(false);
    delete window;
}

void replaceAll(benchmark::State& state)
{
    const QString text = readText(bigFile);
    QcbsLineNumberedTextEdit edit;
    edit.resize(900, 700);
    edit.editor()->highlighter()->setDictionary(dictionary());
    edit.show();
    edit.editor()->setText(text);
    paint(&edit);
    QcbsReplaceDialog* dialog = QcbsReplaceDialog::instance();
    dialog->setEditor(edit.editor());
    dialog->findCombo()->setEditText(QStringLiteral("ATOM"));
    dialog->replaceCombo()->setEditText(QStringLiteral("ATOX"));
    for (auto _ : state) {
        dialog->doReplaceAll();
        paint(&edit);
        state.PauseTiming();
        edit.editor()->undo();
        // One undo step must give back every byte.
        if (edit.editor()->toPlainText() != text)
            state.SkipWithError("undo did not restore the text");
        paint(&edit);
        state.ResumeTiming();
    }
}

void plainReplaceAll(benchmark::State& state)
{
    const QString text = readText(bigFile);
    QPlainTextEdit edit;
    edit.resize(900, 700);
    edit.setLineWrapMode(QPlainTextEdit::NoWrap);
    edit.show();
    edit.setPlainText(text);
    paint(&edit);
    for (auto _ : state) {
        QTextCursor cursor(edit.document());
        cursor.beginEditBlock();
        cursor.select(QTextCursor::Document);
        cursor.insertText(QString(text).replace(QStringLiteral("ATOM"), QStringLiteral("ATOX")));
        cursor.endEditBlock();
        paint(&edit);
        state.PauseTiming();
        edit.undo();
        paint(&edit);
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const IsolatedSettings settings;
    if (readText(bigFile).isEmpty() || dictionary()->size() == 0) {
        std::fprintf(stderr, "ciftools_bench: needs %s and the core dictionary\n", qPrintable(bigFile));
        return 2;
    }
    for (const QString& path : {smallFile, bigFile}) {
        const std::string name = QFileInfo(path).fileName().toStdString();
        benchmark::RegisterBenchmark(("BoxViewOpenBlock/" + name).c_str(), boxViewOpenBlock, path)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("CheckOnly/4hir.cif", checkOnly, bigFile)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BoxViewRebuild/4hir.cif", boxViewRebuild, bigFile)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("LoopEditorOpen/4hir.cif", loopEditorOpen)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("QTableWidgetOpen/4hir.cif", tableWidgetOpen)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(2);
    benchmark::RegisterBenchmark("LoopEditorCellEdit/4hir.cif", loopEditorCellEdit)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("LoopEditorOkIntoEditor/4hir.cif", loopEditorOk)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
    benchmark::RegisterBenchmark("ReplaceAll/4hir.cif", replaceAll)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("PlainQtReplaceAll/4hir.cif", plainReplaceAll)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
