#include "QcbsMainWindow.h"

#include "GuiTestSupport.h"
#include "QcbsAppState.h"
#include "QcbsErrorListView.h"
#include "QcbsOutputPane.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTreeWidgetItem>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Answers every question of the window from a script and records what was shown, so that no
// modal box can stop a test.
class ScriptedWindow : public QcbsMainWindow {
public:
    struct Shown {
        QMessageBox::Icon icon;
        QString title, text;
    };
    static inline QList<Shown> shown;
    static inline QList<int> answers;
    static inline QString saveAnswer;
    static inline int saveDialogs = 0;

    using QcbsMainWindow::parseText;
    using QcbsMainWindow::QcbsMainWindow;

protected:
    int ask(QMessageBox::Icon icon, const QString& title, const QString& text, QMessageBox::StandardButtons,
            QMessageBox::StandardButton defaultButton, QMessageBox::StandardButton, const QString&) override
    {
        shown.append({icon, title, text});
        if (!answers.isEmpty())
            return answers.takeFirst();
        return defaultButton == QMessageBox::NoButton ? QMessageBox::Ok : defaultButton;
    }
    QString chooseSaveFile(const QString&) override
    {
        ++saveDialogs;
        return saveAnswer;
    }
    QString chooseOpenFile() override { return {}; }
    bool openUrl(const QUrl&) override { return true; }
    QcbsMainWindow* createWindow() override { return new ScriptedWindow(appState(), false); }
};

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), bytes.size());
}

bool anyShownContains(const QString& text)
{
    for (const ScriptedWindow::Shown& s : ScriptedWindow::shown)
        if (s.text.contains(text))
            return true;
    return false;
}

} // namespace

class QcbsMainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void actionTable_data();
    void actionTable();
    void openCheckJumpEditSaveReopen();
    void saveFormat_data();
    void saveFormat();
    void lineCountMessage_data();
    void lineCountMessage();
    void untitledSaveGoesThroughSaveAs();
    void backupHoldsOldContents();
    void failedSaveLeavesFileIntact_data();
    void failedSaveLeavesFileIntact();
    void recentPathKeepsItsPlace();
    void cancelStopsExit();
    void printsPages_data();
    void printsPages();

private:
    ScriptedWindow* newWindow();
    QString makeFile(const QString& name, const QByteArray& bytes);

    IsolatedSettings settings_;
    HQcbsAppState state_;
    QTemporaryDir dir_;
};

void QcbsMainWindowTest::initTestCase()
{
    state_ = HQcbsAppState(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    QVERIFY(dir_.isValid());
}

void QcbsMainWindowTest::init()
{
    settings_.clear();
    ScriptedWindow::shown.clear();
    ScriptedWindow::answers.clear();
    ScriptedWindow::saveAnswer.clear();
    ScriptedWindow::saveDialogs = 0;
}

void QcbsMainWindowTest::cleanup()
{
    QList<QPointer<QcbsMainWindow>> open;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget))
            open << window;
    for (const QPointer<QcbsMainWindow>& window : open)
        delete window.data();
    QcbsMainWindow::preferences() = QcbsPreferences();
}

ScriptedWindow* QcbsMainWindowTest::newWindow()
{
    auto* window = new ScriptedWindow(state_);
    window->show();
    return window;
}

QString QcbsMainWindowTest::makeFile(const QString& name, const QByteArray& bytes)
{
    const QString path = dir_.filePath(name);
    writeBytes(path, bytes);
    return path;
}

void QcbsMainWindowTest::actionTable_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QString>("tip");
    QTest::newRow("new") << "fileNew"
                         << "&New"
                         << "Ctrl+N"
                         << "";
    QTest::newRow("open") << "fileOpen"
                          << "&Open..."
                          << "Ctrl+O"
                          << "";
    QTest::newRow("save") << "fileSave"
                          << "&Save..."
                          << "Ctrl+S"
                          << "";
    QTest::newRow("save as") << "fileSaveAs"
                             << "Save &As..."
                             << ""
                             << "";
    QTest::newRow("print") << "filePrint"
                           << "&Print..."
                           << "Ctrl+P"
                           << "";
    QTest::newRow("close") << "fileClose"
                           << "&Close File"
                           << "Ctrl+W"
                           << "";
    QTest::newRow("exit") << "fileExit"
                          << "E&xit"
                          << "Ctrl+Q"
                          << "";
    QTest::newRow("redo") << "edotRedo"
                          << "&Redo"
                          << "Ctrl+Y"
                          << "";
    QTest::newRow("merge") << "combi"
                           << "Merge Template"
                           << ""
                           << "Merge Template into CIF block";
    QTest::newRow("select all") << "editSelectall"
                                << "Select A&ll"
                                << "Ctrl+A"
                                << "";
    QTest::newRow("check") << "reparse"
                           << "Chec&k"
                           << "Ctrl+K"
                           << "Check CIF for errors (Ctrl+K)";
    QTest::newRow("item help") << "ihelp"
                               << "&Item Help"
                               << "Ctrl+I"
                               << "Pop-up Help for DataItems (Ctrl+I)";
    QTest::newRow("browser") << "ihelp"
                             << "&Browser"
                             << "Ctrl+B"
                             << "Browse data and dictionary (Ctrl+B)";
    QTest::newRow("crystal wizard") << "wizcrystal"
                                    << "Crystal Wizard"
                                    << ""
                                    << "Crystal Data Wizard";
    QTest::newRow("edit loop") << "edloop"
                               << "Edit Loop"
                               << "Ctrl+L"
                               << "Edit Loop (Ctrl+L)";
    QTest::newRow("find") << "find"
                          << "&Find..."
                          << "Ctrl+F"
                          << "";
    QTest::newRow("go to line") << "go to line"
                                << "&Go to line..."
                                << "Ctrl+G"
                                << "";
    QTest::newRow("lumenia") << "lumenia"
                             << "Open in &Lumenia"
                             << ""
                             << "Open in Lumenia";
}

void QcbsMainWindowTest::actionTable()
{
    QFETCH(QString, objectName);
    QFETCH(QString, text);
    QFETCH(QString, shortcut);
    QFETCH(QString, tip);
    ScriptedWindow* window = newWindow();
    QAction* found = nullptr;
    for (QAction* action : window->findChildren<QAction*>(objectName))
        if (action->text() == text)
            found = action;
    QVERIFY2(found, qPrintable(objectName + " / " + text));
    QCOMPARE(found->shortcut().toString(), shortcut);
    if (!tip.isEmpty())
        QCOMPARE(found->toolTip(), tip);
}

void QcbsMainWindowTest::openCheckJumpEditSaveReopen()
{
    const QString corpus = sharedPath(QStringLiteral("corpus/cod/1000000-bad-formula.cif"));
    if (!QFileInfo::exists(corpus))
        QSKIP("the shared corpus is absent");
    const QString path = makeFile(QStringLiteral("bad-formula.cif"), readBytes(corpus));
    ScriptedWindow* window = newWindow();
    QVERIFY(window->fileOpen(path, false));
    QCOMPARE(window->fileName(), path);
    QVERIFY(window->windowTitle().endsWith(QStringLiteral(" - bad-formula.cif")));
    QVERIFY(window->document());

    window->reparse();
    QcbsErrorListView* list = window->errorList();
    QVERIFY(list->count(QcbsErrorListView::Warnings) > 0);
    QTreeWidgetItem* finding = list->root(QcbsErrorListView::Warnings)->child(0);
    QVERIFY(finding);
    list->doubleClickedItem(finding);
    const int marked = window->editor()->markedParagraph(QcbsRichTextEdit::ErrorMark);
    QVERIFY(marked >= 0);
    const QString markedLine = window->editor()->document()->findBlockByNumber(marked).text();
    QVERIFY2(finding->text(1).contains(markedLine.simplified().section(' ', 0, 0)),
             qPrintable(finding->text(1) + " / " + markedLine));

    QTextCursor cursor(window->editor()->document()->findBlockByNumber(marked));
    cursor.movePosition(QTextCursor::EndOfBlock);
    cursor.insertText(QStringLiteral(" # checked"));
    QVERIFY(window->statusLine().endsWith(QStringLiteral(" (File Modified)")));
    QVERIFY(window->fileSave());
    QVERIFY(!window->editor()->document()->isModified());
    const QByteArray saved = readBytes(path);
    QVERIFY(saved.contains(markedLine.toUtf8() + " # checked\r\n"));

    QVERIFY(window->fileClose());
    QVERIFY(window->fileOpen(path, false));
    QCOMPARE(window->editor()->document()->findBlockByNumber(marked).text(), markedLine + " # checked");
}

void QcbsMainWindowTest::saveFormat_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("line feeds become CR LF") << QByteArray("data_a\n_cell_length_a 5.0\n") << QString()
                                             << QByteArray("data_a\r\n_cell_length_a 5.0\r\n");
    QTest::newRow("CR LF kept") << QByteArray("data_a\r\n_x 1\r\n") << QString()
                                << QByteArray("data_a\r\n_x 1\r\n");
    QTest::newRow("only one trailing blank removed") << QByteArray("data_a  \n_x 1\t\n_y 2   \n") << QString()
                                                     << QByteArray("data_a \r\n_x 1\r\n_y 2  \r\n");
    QTest::newRow("last line has no line end")
        << QByteArray("data_a\n") << QStringLiteral("data_a\n_x 1") << QByteArray("data_a\r\n_x 1");
    QTest::newRow("Latin-1 bytes kept") << QByteArray("data_a\n_name 'M\xfcller'\n") << QString()
                                        << QByteArray("data_a\r\n_name 'M\xfcller'\r\n");
}

void QcbsMainWindowTest::saveFormat()
{
    QFETCH(QByteArray, original);
    QFETCH(QString, typed);
    QFETCH(QByteArray, expected);
    const QString path = makeFile(QStringLiteral("format.cif"), original);
    ScriptedWindow* window = newWindow();
    QVERIFY(window->fileOpen(path, false));
    if (!typed.isNull())
        window->editor()->setPlainText(typed);
    QVERIFY(window->fileSave());
    QCOMPARE(readBytes(path), expected);
}

void QcbsMainWindowTest::lineCountMessage_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("message");
    QTest::newRow("one line") << QByteArray("data_one\n") << "Read 1 line.";
    QTest::newRow("one line without end") << QByteArray("data_one") << "Read 1 line.";
    QTest::newRow("three lines") << QByteArray("data_a\n_x 1\n_y 2\n") << "Read 3 lines.";
    QTest::newRow("empty file") << QByteArray() << "Read 0 lines.";
}

void QcbsMainWindowTest::lineCountMessage()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, message);
    const QString path = makeFile(QStringLiteral("count.cif"), contents);
    ScriptedWindow* window = newWindow();
    QVERIFY(window->fileOpen(path, false));
    QVERIFY2(window->outputPane()->toPlainText().contains(message),
             qPrintable(window->outputPane()->toPlainText()));
}

void QcbsMainWindowTest::untitledSaveGoesThroughSaveAs()
{
    ScriptedWindow* window = newWindow();
    QVERIFY(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()));
    window->editor()->setPlainText(QStringLiteral("data_new\n_x 1"));
    const QString target = dir_.filePath(QStringLiteral("chosen.cif"));
    QFile::remove(target);
    ScriptedWindow::saveAnswer = target;
    QVERIFY(window->fileSave());
    QCOMPARE(ScriptedWindow::saveDialogs, 1);
    QCOMPARE(window->fileName(), target);
    QCOMPARE(readBytes(target), QByteArray("data_new\r\n_x 1"));
    QVERIFY(QcbsMainWindow::recentFiles().contains(target));
    QCOMPARE(window->windowTitle(), QStringLiteral("Cifward - chosen.cif"));

    // Saving again goes straight to the file.
    window->editor()->appendPlainText(QStringLiteral("_y 2"));
    QVERIFY(window->fileSave());
    QCOMPARE(ScriptedWindow::saveDialogs, 1);
}

void QcbsMainWindowTest::backupHoldsOldContents()
{
    const QString path = makeFile(QStringLiteral("kept.cif"), "data_old\n_x 1\n");
    QFile::remove(dir_.filePath(QStringLiteral("kept_backup.cif")));
    ScriptedWindow* window = newWindow();
    QcbsMainWindow::preferences().saveBackupFile = true;
    window->initialiseEditorSettings();
    QVERIFY(window->fileOpen(path, false));
    window->editor()->setPlainText(QStringLiteral("data_new\n_x 2"));
    QVERIFY(window->fileSave());
    QcbsMainWindow::preferences().saveBackupFile = false;
    window->initialiseEditorSettings();
    QCOMPARE(readBytes(dir_.filePath(QStringLiteral("kept_backup.cif"))), QByteArray("data_old\n_x 1\n"));
    QCOMPARE(readBytes(path), QByteArray("data_new\r\n_x 2"));
}

void QcbsMainWindowTest::failedSaveLeavesFileIntact_data()
{
    QTest::addColumn<QString>("failure");
    QTest::addColumn<QString>("message");
    QTest::newRow("read-only directory") << "readonly"
                                         << "Could not write to this file";
    QTest::newRow("full disk") << "full"
                               << "Could not write to this file";
    QTest::newRow("changed on disk") << "changed"
                                     << "has changed on disk since it was opened";
}

// The save runs in a child process, where a file size limit or a user without write permission
// can be imposed without touching the test itself.
void QcbsMainWindowTest::failedSaveLeavesFileIntact()
{
    QFETCH(QString, failure);
    QFETCH(QString, message);
    const QString corpus = sharedPath(QStringLiteral("corpus/cod/00993.cif"));
    if (!QFileInfo::exists(corpus))
        QSKIP("the shared corpus is absent");
    QTemporaryDir place;
    QVERIFY(place.isValid());
    const QByteArray placeName = QFile::encodeName(place.path());
    QCOMPARE(::chmod(placeName.constData(), 0755), 0);
    const QString path = place.filePath(QStringLiteral("victim.cif"));
    QByteArray onDisk = readBytes(corpus);
    writeBytes(path, onDisk);

    ScriptedWindow* window = newWindow();
    QVERIFY(window->fileOpen(path, false));
    window->editor()->appendPlainText(QStringLiteral("_edited_by_test yes"));
    if (failure == QLatin1String("changed")) {
        QTest::qWait(20);
        onDisk += "# changed by another program\n";
        writeBytes(path, onDisk);
    }
    if (failure == QLatin1String("readonly"))
        QCOMPARE(::chmod(placeName.constData(), 0555), 0);

    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        if (failure == QLatin1String("full")) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{512, 512};
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        // Root writes anywhere; the directory's permissions only bind an ordinary user.
        if (failure == QLatin1String("readonly") && geteuid() == 0 && setuid(65534) != 0)
            _exit(100);
        const bool saved = window->fileSave();
        const int code = (saved ? 1 : 0) | (window->editor()->document()->isModified() ? 2 : 0) |
                         (anyShownContains(message) ? 4 : 0);
        _exit(code);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QCOMPARE(::chmod(placeName.constData(), 0755), 0);
    QVERIFY(WIFEXITED(status));
    const int code = WEXITSTATUS(status);
    QVERIFY2(code != 100, "could not drop privileges");
    QVERIFY2(!(code & 1), "the save reported success");
    QVERIFY2(code & 2, "the editor lost its modified state");
    QVERIFY2(code & 4, "the failure was not reported");
    QCOMPARE(readBytes(path), onDisk);
    QCOMPARE(QDir(place.path()).entryList(QDir::Files), QStringList{QStringLiteral("victim.cif")});
}

void QcbsMainWindowTest::recentPathKeepsItsPlace()
{
    const QString a = makeFile(QStringLiteral("recent-a.cif"), "data_a\n");
    const QString b = makeFile(QStringLiteral("recent-b.cif"), "data_b\n");
    QcbsMainWindow::preferences().reuseWindow = true;
    ScriptedWindow* window = newWindow();
    QcbsMainWindow::preferences().reuseWindow = true;
    QVERIFY(window->fileOpen(a, false));
    QVERIFY(window->fileOpen(b, false));
    QVERIFY(window->fileOpen(a, false));
    QcbsMainWindow::preferences().reuseWindow = false;
    const QStringList recent = QcbsMainWindow::recentFiles();
    QVERIFY(recent.indexOf(a) >= 0);
    QVERIFY(recent.indexOf(a) < recent.indexOf(b));
    QCOMPARE(recent.count(a), 1);
    QCOMPARE(window->fileName(), a);
}

void QcbsMainWindowTest::cancelStopsExit()
{
    QPointer<ScriptedWindow> first = newWindow();
    QPointer<ScriptedWindow> second = newWindow();
    first->editor()->insertPlainText(QStringLiteral("data_first"));
    second->editor()->insertPlainText(QStringLiteral("data_second"));
    ScriptedWindow::answers = {QMessageBox::Cancel, QMessageBox::Cancel};
    first->fileExit();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(first && second);
    QVERIFY(first->isVisible() && second->isVisible());
    QCOMPARE(ScriptedWindow::shown.size(), 1);
    QCOMPARE(ScriptedWindow::shown.first().text, QStringLiteral("Save changes to current file?"));

    ScriptedWindow::answers = {QMessageBox::No, QMessageBox::No};
    first->fileExit();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!first && !second);
}

void QcbsMainWindowTest::printsPages_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("fewestPages");
    QTest::addColumn<int>("mostPages");
    QTest::newRow("one line") << 1 << 1 << 1;
    QTest::newRow("two hundred lines") << 200 << 3 << 8;
}

void QcbsMainWindowTest::printsPages()
{
    QFETCH(int, lines);
    QFETCH(int, fewestPages);
    QFETCH(int, mostPages);
    ScriptedWindow* window = newWindow();
    QStringList text;
    for (int n = 0; n < lines; ++n)
        text << QStringLiteral("_item_%1 %1").arg(n);
    window->editor()->setPlainText(text.join('\n'));
    const QString pdf = dir_.filePath(QStringLiteral("print.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPdfVersion(QPagedPaintDevice::PdfVersion_1_4);
    QVERIFY(window->printTo(printer));
    const QByteArray bytes = readBytes(pdf);
    QVERIFY(bytes.startsWith("%PDF"));
    const int pages = bytes.count("/Type /Page\n") + bytes.count("/Type /Page\r") +
                      bytes.count("/Type /Page ") + bytes.count("/Type /Page/");
    QVERIFY2(pages >= fewestPages && pages <= mostPages, qPrintable(QString::number(pages)));
}

QTEST_MAIN(QcbsMainWindowTest)
#include "QcbsMainWindowTest.moc"
