// The life of a document in a window: new, open and load, close, save with its backup copy,
// the recent files and printing.

#include "QcbsCifBoxView.h"
#include "QcbsCifText.h"
#include "QcbsCoreCifFileValidator.h"
#include "QcbsErrorListView.h"
#include "QcbsLineNumberView.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsMainWindow.h"
#include "QcbsMainWindowShared.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextDocument>
#include <unistd.h>
#include <zlib.h>

using namespace mainwindow;

namespace {

// The text as a gzip file holds it; empty if it cannot be compressed.
QByteArray gzipped(const QByteArray& bytes)
{
    z_stream z{};
    // 16 + the largest window: a gzip header and trailer around the data, as gzip(1) writes.
    if (deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        return {};
    QByteArray out(static_cast<qsizetype>(deflateBound(&z, static_cast<uLong>(bytes.size()))),
                   Qt::Uninitialized);
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    z.avail_in = static_cast<uInt>(bytes.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = static_cast<uInt>(out.size());
    const bool done = deflate(&z, Z_FINISH) == Z_STREAM_END;
    out.resize(static_cast<qsizetype>(z.total_out));
    deflateEnd(&z);
    return done ? out : QByteArray();
}

} // namespace

// --- the document -------------------------------------------------------------------------------

QString QcbsMainWindow::fileName() const
{
    return fileName_;
}

HCif QcbsMainWindow::document() const
{
    return document_;
}

bool QcbsMainWindow::isReusable() const
{
    return preferences().reuseWindow ||
           (editor_ && !editor_->document()->isModified() && editor_->document()->isEmpty());
}

void QcbsMainWindow::fileNew()
{
    fileNew(isReusable());
}

void QcbsMainWindow::fileNew(bool reuse)
{
    if (!reuse && documentOpen_) {
        newWindow();
        return;
    }
    if (reuse && documentOpen_ && !fileClose())
        return;
    errorList_->clear();
    if (!preferences().startWithTemplate) {
        fileNewUntitled();
        return;
    }
    if (loadFile(preferences().templateFilename, false, false)) {
        enableParseTools(true);
        editor_->setParsed(false);
        writeToOutputPane(QStringLiteral("(Note, template files are not automatically parsed for errors)"));
    } else {
        fileNewUntitled();
        statusBarMessage(QStringLiteral("Could not open template file"));
    }
}

void QcbsMainWindow::fileNewUntitled()
{
    const int counter = shared().untitledCounter++;
    const QString number = QString::number(counter);
    writeToOutputPane(QStringLiteral("<br>Starting new file \"untitled") + number + QStringLiteral(".cif\""));
    const QString path = untitledPrefix() + number + QStringLiteral(".cif");
    editor_->setText(QString());
    editor_->setParsed(false);
    fileName_ = path;
    document_ = HCif();
    documentOpen_ = true;
    stamp_ = DiskStamp();
    compressed_ = compressionAgreed_ = false;
    setCaption(path);
    boxView_->setCif(HCif());
    boxView_->setVisible(boxViewVisible_);
    updateBlockCombo(nullptr);
    enableTools(tabs_->currentWidget());
    enableParseTools(false);
    statusLineNumber();
}

void QcbsMainWindow::newWindow()
{
    saveSettings();
    QcbsMainWindow* window = createWindow();
    window->fileNew(true);
    window->show();
}

void QcbsMainWindow::fileOpen()
{
    const QString path = chooseOpenFile();
    if (path.isEmpty())
        return;
    if (isReusable()) {
        if (documentOpen_ && !fileClose())
            return;
        loadFile(path, true, true);
    } else {
        openInNewWindow(path, true);
    }
}

bool QcbsMainWindow::fileOpen(const QString& path)
{
    return fileOpen(path, true);
}

bool QcbsMainWindow::fileOpen(const QString& path, bool showMessages)
{
    if (path.isEmpty())
        return true;
    QFile probe(path);
    if (!probe.open(QIODevice::ReadOnly))
        return false;
    probe.close();
    if (!isReusable())
        return openInNewWindow(path, showMessages);
    if (documentOpen_ && !fileClose())
        return false;
    return loadFile(path, true, showMessages);
}

bool QcbsMainWindow::openInNewWindow(const QString& path, bool showMessages)
{
    if (documentOpen_ && QFileInfo(path) == QFileInfo(fileName_)) {
        if (showMessages)
            ask(QMessageBox::Information, programText(),
                QStringLiteral("The file \"") + path + QStringLiteral("\" is already open."));
        return false;
    }
    saveSettings();
    QcbsMainWindow* window = createWindow();
    window->show();
    if (window->loadFile(path, true, showMessages))
        return true;
    window->close();
    return false;
}

bool QcbsMainWindow::loadFile(const QString& path, bool report, bool showMessages)
{
    if (documentOpen_ && QFileInfo(path) == QFileInfo(fileName_)) {
        ask(QMessageBox::Information, programText(), QStringLiteral("That file is already open."));
        return false;
    }
    // Read whole before anything changes: a file that is not text, or a compressed one cut
    // short, is refused rather than shown in part and perhaps saved over the original.
    QByteArray bytes;
    QString unreadable;
    bool compressed = false;
    if (path.isEmpty() || !readCifFile(path, bytes, unreadable, &compressed)) {
        if (showMessages)
            ask(QMessageBox::Critical, QStringLiteral("Error"),
                QStringLiteral("Could not open file \"") + path + QLatin1Char('"') +
                    (unreadable.isEmpty() ? QString() : QStringLiteral("\n\n") + unreadable));
        return false;
    }
    writeToOutputPane(QStringLiteral("Reading CIF \"") + path + QLatin1Char('"'));
    const QString name = QFileInfo(path).fileName();
    QcbsCoreCifFileValidator validator;
    if (validator.validate(QFile::encodeName(path).toStdString()) == 0) {
        writeToOutputPane(QStringLiteral("Warning: \"") + name +
                          QStringLiteral("\" does not appear to be a valid CIF."));
        if (showMessages)
            ask(QMessageBox::Warning, QStringLiteral("Warning"),
                QStringLiteral("File \"") + name + QStringLiteral("\" does not appear to be a valid CIF."),
                QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, QStringLiteral("Continue"));
    }

    QApplication::setOverrideCursor(Qt::WaitCursor);
    editor_->setUpdatesEnabled(false);
    statusBarMessage(QStringLiteral("Reading...  "));
    int lines = 0;
    const QString text = editorLines(decodeCifText(bytes, &latin1_), lines);
    bytes.clear();
    compressed_ = compressed;
    compressionAgreed_ = false;
    editor_->setText(text);
    editor_->moveCursor(QTextCursor::Start);
    editor_->setUpdatesEnabled(true);
    editor_->document()->setModified(false);
    documentOpen_ = true;
    enableTools(tabs_->currentWidget());
    initialiseEditorSettings();
    setCaption(path);
    writeToOutputPane(QStringLiteral("Read ") + QString::number(lines) +
                      (lines == 1 ? QStringLiteral(" line.") : QStringLiteral(" lines.")));
    progress_->reset();

    fileName_ = path;
    stamp_ = stampOf(path);
    addRecentFile(path);

    statusBarMessage(QStringLiteral("Parsing CIF...  "));
    document_ = parseFile(path, report);
    editor_->setParsed(true);
    enableTools(tabs_->currentWidget());
    numberedEditor_->lineNumberView()->setNumberOfLines(editor_->document()->blockCount());
    QApplication::restoreOverrideCursor();
    statusBarMessage(QStringLiteral("Ready"));
    statusLineNumber();
    return true;
}

bool QcbsMainWindow::fileClose()
{
    if (!editor_)
        return false;
    if (editor_->document()->isModified()) {
        const int answer =
            ask(QMessageBox::Warning, programText(), QStringLiteral("Save changes to current file?"),
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel,
                QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel)
            return false;
        if (answer == QMessageBox::Yes)
            fileSave();
        else
            editor_->document()->setModified(false);
    }
    if (editor_->document()->isModified() || !tabs_->currentWidget())
        return false;
    saveSettings();
    fileName_.clear();
    document_ = HCif();
    documentOpen_ = false;
    stamp_ = DiskStamp();
    compressed_ = compressionAgreed_ = false;
    editor_->setText(QString());
    editor_->document()->setModified(false);
    updateBlockCombo(nullptr);
    setCaption(QString());
    return true;
}

void QcbsMainWindow::fileCloseRequested()
{
    int windows = 0;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (qobject_cast<QcbsMainWindow*>(widget) && widget->isVisible())
            ++windows;
    if (windows > 1) {
        close();
        return;
    }
    if (editor_->document()->isModified() || !editor_->document()->isEmpty())
        fileNew(true);
}

void QcbsMainWindow::fileExit()
{
    QApplication::closeAllWindows();
}

// --- saving -------------------------------------------------------------------------------------

QcbsMainWindow::DiskStamp QcbsMainWindow::stampOf(const QString& path) const
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    return {info.lastModified(), info.size()};
}

bool QcbsMainWindow::changedOnDisk(const QString& path) const
{
    if (stamp_.size < 0)
        return false;
    const DiskStamp now = stampOf(path);
    return now.size != stamp_.size || now.modified != stamp_.modified;
}

bool QcbsMainWindow::writeDocument(const QString& path)
{
    static const QRegularExpression oneTrailingSpace(QStringLiteral("\\s$"));
    QString text;
    text.reserve(editor_->document()->characterCount() * 2);
    for (QTextBlock block = editor_->document()->begin(); block.isValid(); block = block.next()) {
        if (block != editor_->document()->begin())
            text += QStringLiteral("\r\n");
        QString line = block.text();
        line.remove(oneTrailingSpace);
        text += line;
    }
    QByteArray bytes = latin1_ ? text.toLatin1() : text.toUtf8();
    if (compressed_) {
        bytes = gzipped(bytes);
        if (bytes.isEmpty())
            return false;
    }

    // The new text goes to a file beside the old one and replaces it only when complete, so a
    // full disk or a killed process never leaves the user's file half written.
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.flush()) {
        out.cancelWriting();
        return false;
    }
    if (state_->saveBackupFile && QFileInfo::exists(path)) {
        const QFileInfo info(path);
        const int dot = path.lastIndexOf(QLatin1Char('.'));
        const bool dotInName = dot > path.lastIndexOf(QLatin1Char('/'));
        const QString backup = dotInName ? path.left(dot) + QStringLiteral("_backup") + path.mid(dot)
                                         : path + QStringLiteral("_backup");
        QFile::remove(backup);
        // A second name for the old contents survives the rename below untouched.
        const bool kept =
            ::link(QFile::encodeName(path).constData(), QFile::encodeName(backup).constData()) == 0 ||
            QFile::copy(path, backup);
        if (!kept)
            ask(QMessageBox::Warning, QStringLiteral("Error"),
                QStringLiteral("Could not write backup copy of this file:\n") + backup);
    }
    return out.commit();
}

bool QcbsMainWindow::fileSave()
{
    if (!editor_)
        return false;
    if (fileName_.isEmpty() || !QFileInfo::exists(fileName_))
        return fileSaveAs();
    if (compressed_ && !compressionAgreed_) {
        // Plain text over a compressed file would leave a .gz that nothing can unpack; and the
        // compressed file may be the only copy kept of it.
        const int answer =
            ask(QMessageBox::Warning, programText(),
                QStringLiteral("The file \"") + QFileInfo(fileName_).fileName() +
                    QStringLiteral("\" is gzip-compressed. Write the changes back to it, "
                                   "compressed?\n\nNo saves them uncompressed under another name."),
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel,
                QMessageBox::Cancel);
        if (answer == QMessageBox::No)
            return fileSaveAs();
        if (answer != QMessageBox::Yes) {
            statusBarMessage(QStringLiteral("Not saved"));
            return false;
        }
        compressionAgreed_ = true;
    }
    if (changedOnDisk(fileName_)) {
        const int answer =
            ask(QMessageBox::Warning, programText(),
                QStringLiteral("The file \"") + QFileInfo(fileName_).fileName() +
                    QStringLiteral("\" has changed on disk since it was opened. Overwrite it?"),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes) {
            statusBarMessage(QStringLiteral("Not saved: the file changed on disk"));
            return false;
        }
    }
    if (!writeDocument(fileName_)) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral(
                "Could not write to this file. Check file permissions, or use 'Save As' to make a copy"));
        return false;
    }
    stamp_ = stampOf(fileName_);
    editor_->document()->setModified(false);
    statusLineNumber();
    return true;
}

bool QcbsMainWindow::fileSaveAs()
{
    if (!editor_)
        return false;
    const bool untitled = fileName_.isEmpty() || fileName_.startsWith(untitledPrefix());
    QString path = untitled ? QStringLiteral("new.cif") : fileName_;
    // A compressed file is offered under the name of its contents.
    if (compressed_ && path.endsWith(QStringLiteral(".gz"), Qt::CaseInsensitive))
        path.chop(3);
    for (;;) {
        path = chooseSaveFile(path);
        if (path.isEmpty())
            return false;
        if (!QFileInfo::exists(path))
            break;
        const int answer = ask(QMessageBox::Warning, programText(),
                               path + QStringLiteral(" already exists\nDo you want to replace it?"),
                               QMessageBox::Yes | QMessageBox::No, QMessageBox::No, QMessageBox::No);
        if (answer == QMessageBox::Yes)
            break;
    }
    const bool existed = QFileInfo::exists(path);
    {
        QFile probe(path);
        if (!probe.open(QIODevice::Append)) {
            ask(QMessageBox::Critical, QStringLiteral("Error"),
                QStringLiteral("Could not write to this file (check permissions)"));
            return false;
        }
    }
    const QString previous = fileName_;
    const DiskStamp previousStamp = stamp_;
    const bool previousCompressed = compressed_;
    fileName_ = path;
    // Choosing the name is the user's consent to replace whatever is there now, and a name that
    // ends in .gz asks for the text compressed.
    stamp_ = stampOf(path);
    compressed_ = compressionAgreed_ = path.endsWith(QStringLiteral(".gz"), Qt::CaseInsensitive);
    if (!fileSave()) {
        if (!existed)
            QFile::remove(path);
        fileName_ = previous;
        stamp_ = previousStamp;
        compressed_ = previousCompressed;
        compressionAgreed_ = false;
        return false;
    }
    setCaption(path);
    addRecentFile(path);
    return true;
}

// --- recent files -------------------------------------------------------------------------------

void QcbsMainWindow::addRecentFile(const QString& path)
{
    QList<RecentEntry>& recent = shared().recent;
    recent.erase(std::remove_if(recent.begin(), recent.end(), [](const RecentEntry& e) { return e.id == 0; }),
                 recent.end());
    for (const RecentEntry& entry : recent)
        if (entry.path == path) {
            rebuildRecentMenu();
            return;
        }
    const int oldest = shared().nextRecentId - QcbsPreferences::maxRecentFiles;
    if (oldest > 0)
        recent.erase(std::remove_if(recent.begin(), recent.end(),
                                    [oldest](const RecentEntry& e) { return e.id == oldest; }),
                     recent.end());
    recent.append({shared().nextRecentId++, path});
    rebuildRecentMenu();
}

void QcbsMainWindow::fileLoadRecent(int id)
{
    if (shared().lastActive != this)
        return;
    if (QApplication::activeWindow() && QApplication::activeWindow() != this)
        return;
    QString path;
    for (const RecentEntry& entry : shared().recent)
        if (entry.id == id && id != 0)
            path = entry.path;
    if (path.isEmpty())
        return;
    if (!QFileInfo::exists(path)) {
        ask(QMessageBox::Warning, QStringLiteral("Error"),
            QStringLiteral("The file \"") + path + QStringLiteral("\" no longer exists."));
        return;
    }
    const bool same = documentOpen_ && QFileInfo(path) == QFileInfo(fileName_);
    if (isReusable()) {
        if (same) {
            ask(QMessageBox::Information, programText(), QStringLiteral("That file is already open."));
            return;
        }
        if (documentOpen_ && !fileClose())
            return;
        loadFile(path, true, true);
    } else if (same) {
        openInNewWindow(path, true);
    }
}

void QcbsMainWindow::saveSettings()
{
    QcbsPreferences& prefs = preferences();
    prefs.recentFiles = recentFiles();
    if (isVisible() && !isMaximized()) {
        prefs.windowWidth = width();
        prefs.windowHeight = height();
    }
    prefs.write();
}

// --- printing -----------------------------------------------------------------------------------

void QcbsMainWindow::filePrint()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    if (!setUpPrinter(printer))
        return;
    if (!printTo(printer))
        statusBarMessage(QStringLiteral("Printing failed"));
}

bool QcbsMainWindow::printTo(QPrinter& printer)
{
    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const int dpi = printer.logicalDpiY();
    const int margin = dpi * 72 / 72;
    const QRect page(0, 0, printer.width(), printer.height());
    QFont font = editor_->font();
    QTextDocument layout;
    layout.documentLayout()->setPaintDevice(&printer);
    layout.setDefaultFont(font);
    layout.setPlainText(editor_->toPlainText());
    const QFontMetrics footerMetrics(font, &printer);
    const QRect body(margin, margin, page.width() - 2 * margin, page.height() - 2 * margin);
    layout.setTextWidth(body.width());
    layout.setPageSize(body.size());

    const QString left = QStringLiteral("Cifward:  ") + QFileInfo(fileName_).fileName();
    const QString stamp = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    const int pages = qMax(1, layout.pageCount());
    for (int n = 0; n < pages; ++n) {
        if (n > 0)
            printer.newPage();
        painter.save();
        painter.translate(body.left(), body.top() - n * body.height());
        const QRectF visible(0, n * body.height(), body.width(), body.height());
        painter.setClipRect(visible);
        layout.drawContents(&painter, visible);
        painter.restore();
        painter.setFont(font);
        const int baseline = body.bottom() + footerMetrics.height() + footerMetrics.ascent();
        painter.drawText(body.left(), baseline, left);
        const QString right = stamp + QStringLiteral("  Page ") + QString::number(n + 1);
        painter.drawText(body.right() - footerMetrics.horizontalAdvance(right), baseline, right);
    }
    return painter.end();
}
