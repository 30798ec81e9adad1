// The editor on large CIFs: loading a file into the line-numbered editor with its highlighter
// until the first screen is painted, the main window opening and checking the file, a keystroke
// in the middle of the file, and a jump to the end. The peer is Qt's own plain text editor with no
// highlighter and no line numbers, loading the same text in the same run: the ratio is what the CIF editor
// adds to what Qt costs anyway.
//
// Arguments: the benchmark's own, then BENCH_EDITOR_FILES in the environment: the CIFs to load,
// separated by ':' (default the corpus's 4hir.cif).

#include "BenchSupport.h"
#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsMainWindow.h"
#include "QcbsRichTextEdit.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QApplication>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <benchmark/benchmark.h>

namespace {

// The editor as the program shows it: on screen, with line numbers and the core dictionary.
void prepare(QcbsLineNumberedTextEdit& edit)
{
    edit.resize(900, 700);
    edit.editor()->highlighter()->setDictionary(dictionary());
    edit.show();
    QCoreApplication::processEvents();
}

void cifEditorLoad(benchmark::State& state, const QString& text)
{
    for (auto _ : state) {
        QcbsLineNumberedTextEdit edit;
        prepare(edit);
        edit.editor()->setText(text);
        paint(&edit);
        state.PauseTiming();
        edit.close();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void plainEditorLoad(benchmark::State& state, const QString& text)
{
    for (auto _ : state) {
        QPlainTextEdit edit;
        edit.resize(900, 700);
        edit.setLineWrapMode(QPlainTextEdit::NoWrap);
        edit.show();
        QCoreApplication::processEvents();
        edit.setPlainText(text);
        paint(&edit);
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

// A letter typed into a value in the middle of the file, shown on screen.
void cifEditorKeystroke(benchmark::State& state, const QString& text)
{
    QcbsLineNumberedTextEdit edit;
    prepare(edit);
    edit.editor()->setText(text);
    const int middle = edit.editor()->document()->blockCount() / 2;
    edit.editor()->gotoLine(middle, QString());
    edit.editor()->moveCursor(QTextCursor::EndOfBlock);
    paint(&edit);
    for (auto _ : state) {
        edit.editor()->textCursor().insertText(QStringLiteral("x"));
        paint(&edit);
    }
}

void cifEditorJumpToEnd(benchmark::State& state, const QString& text)
{
    QcbsLineNumberedTextEdit edit;
    prepare(edit);
    edit.editor()->setText(text);
    paint(&edit);
    const int last = edit.editor()->document()->blockCount();
    bool atEnd = false;
    for (auto _ : state) {
        edit.editor()->gotoLine(atEnd ? 1 : last, QString());
        atEnd = !atEnd;
        paint(&edit);
    }
}

// The program's own road: a main window opens the file, checks it against the dictionaries and
// fills the error list, until the window has painted and answers again.
void mainWindowOpenAndCheck(benchmark::State& state, const QString& path)
{
    HQcbsAppState appState(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    for (auto _ : state) {
        auto* window = new QcbsMainWindow(appState);
        window->resize(1000, 760);
        window->show();
        QCoreApplication::processEvents();
        if (!window->loadFile(path, true, false))
            state.SkipWithError("the file did not load");
        paint(window);
        state.PauseTiming();
        window->close();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    // The editor reads its styles from the settings: a temporary store keeps the user's apart.
    const IsolatedSettings settings;

    QString files = qEnvironmentVariable("BENCH_EDITOR_FILES");
    if (files.isEmpty())
        files = QStringLiteral(CIFWARD_SHARED_DIR "/corpus/iucr-ciftest/real/4hir.cif");
    for (const QString& path : files.split(u':', Qt::SkipEmptyParts)) {
        const QString text = readText(path);
        if (text.isEmpty()) {
            std::fprintf(stderr, "editor_bench: cannot read %s\n", qPrintable(path));
            return 2;
        }
        const std::string name = QFileInfo(path).fileName().toStdString();
        benchmark::RegisterBenchmark(("CifEditorLoad/" + name).c_str(), cifEditorLoad, text)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("PlainQtEditorLoad/" + name).c_str(), plainEditorLoad, text)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("MainWindowOpenAndCheck/" + name).c_str(), mainWindowOpenAndCheck, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("CifEditorKeystroke/" + name).c_str(), cifEditorKeystroke, text)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("CifEditorJumpToEnd/" + name).c_str(), cifEditorJumpToEnd, text)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
