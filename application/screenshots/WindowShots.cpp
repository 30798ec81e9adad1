// Writes screenshots of the main window after checking a damaged CIF (error list, output pane,
// the marked line of the first error), of multiple-window and single-window mode, and prints the
// checked file to a PDF. The settings live in a temporary directory for the run.
//
//   xvfb-run -a cifward-window-shots OUTDIR DAMAGED.cif OTHER.cif

#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsErrorListView.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPrinter>
#include <QScreen>
#include <QTreeWidgetItem>
#include <cstdio>

namespace {

void settle()
{
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents();
}

bool saveImage(const QPixmap& pixmap, const QString& path)
{
    if (!pixmap.save(path)) {
        std::fprintf(stderr, "cifward-window-shots: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

bool grabScreen(const QString& path)
{
    settle();
    return saveImage(QGuiApplication::primaryScreen()->grabWindow(0), path);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: cifward-window-shots OUTDIR DAMAGED.cif OTHER.cif\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const QString damaged = QString::fromLocal8Bit(argv[2]);
    const QString other = QString::fromLocal8Bit(argv[3]);
    const IsolatedSettings settings;
    if (!QDir().mkpath(out))
        return 2;

    HQcbsAppState state(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    auto* window = new QcbsMainWindow(state);
    window->setGeometry(20, 20, 1000, 760);
    window->show();
    settle();
    if (!window->loadFile(damaged, true, false)) {
        std::fprintf(stderr, "cifward-window-shots: cannot load %s\n", argv[2]);
        return 1;
    }
    // A double click on the first error, as the user would, marks its line.
    QTreeWidgetItem* errors = window->errorList()->root(QcbsErrorListView::Errors);
    if (errors->childCount() > 0)
        window->errorList()->doubleClickedItem(errors->child(0));
    settle();
    bool ok = saveImage(window->grab(), out + QStringLiteral("/window-checked.png"));

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(out + QStringLiteral("/print.pdf"));
    ok &= window->printTo(printer);
    if (ok)
        std::printf("%s\n", qPrintable(printer.outputFileName()));

    // Multiple windows: a second file opens beside the first.
    window->openInNewWindow(other, false);
    if (QcbsMainWindow* second = QcbsMainWindow::lastActive())
        second->setGeometry(320, 180, 900, 640);
    ok &= grabScreen(out + QStringLiteral("/windows-multiple.png"));

    // Single window: with "reuse window" on, the next file replaces the document in place.
    QApplication::closeAllWindows();
    settle();
    QcbsPreferences preferences = QcbsPreferences::read();
    preferences.reuseWindow = true;
    preferences.write();
    auto* single = new QcbsMainWindow(state);
    single->setGeometry(20, 20, 1000, 760);
    single->show();
    single->fileOpen(damaged, false);
    single->fileOpen(other, false);
    ok &= grabScreen(out + QStringLiteral("/window-single.png"));
    QApplication::closeAllWindows();
    return ok ? 0 : 1;
}
