#include "GuiTestSupport.h"
#include "ProgramInfo.h"
#include "QcbsAppState.h"
#include "QcbsApplication.h"
#include "QcbsErrorListView.h"
#include "QcbsMainWindow.h"
#include "QcbsOutputPane.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidgetItem>
#include <QUrl>
#include <QtTest>

namespace {

// Answers every question of the window, records what was shown and what the platform opener
// was asked for, so that no modal box or browser can stop a test.
class RouteWindow : public QcbsMainWindow {
public:
    struct Shown {
        QString title, text;
    };
    static inline QList<Shown> shown;
    static inline QList<int> answers;
    static inline QList<QUrl> opened;
    static inline bool openerWorks = true;

    using QcbsMainWindow::QcbsMainWindow;

protected:
    int ask(QMessageBox::Icon, const QString& title, const QString& text, QMessageBox::StandardButtons,
            QMessageBox::StandardButton defaultButton, QMessageBox::StandardButton, const QString&) override
    {
        shown.append({title, text});
        if (!answers.isEmpty())
            return answers.takeFirst();
        return defaultButton == QMessageBox::NoButton ? QMessageBox::Ok : defaultButton;
    }
    QString chooseSaveFile(const QString&) override { return {}; }
    QString chooseOpenFile() override { return {}; }
    bool openUrl(const QUrl& url) override
    {
        opened.append(url);
        return openerWorks;
    }
    QcbsMainWindow* createWindow() override { return new RouteWindow(appState(), false); }
};

// The start-up box of single-window mode is a plain application box with no window to answer
// for it: it is closed from the event loop it runs, and its title and text are kept, with
// whether `behind` was out of sight while it showed.
class ModalCatcher {
public:
    explicit ModalCatcher(QWidget* behind)
    {
        timer_.setInterval(20);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, behind] {
            QWidget* modal = QApplication::activeModalWidget();
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                seen << box->windowTitle() + QLatin1Char('|') + box->text() +
                            (behind->isVisible() ? QStringLiteral("|window shown")
                                                 : QStringLiteral("|window hidden"));
                box->accept();
            } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
                seen << QStringLiteral("unexpected dialog");
                dialog->reject();
            }
        });
        timer_.start();
    }
    QStringList seen;

private:
    QTimer timer_;
};

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    QCOMPARE(file.write(bytes), bytes.size());
}

QList<QcbsMainWindow*> openWindows()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QList<QcbsMainWindow*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget); window && window->isVisible())
            windows << window;
    return windows;
}

// The names of the files held by the open windows, sorted, untitled documents left out.
QStringList loadedNames()
{
    QStringList names;
    for (QcbsMainWindow* window : openWindows())
        if (window->hasDocument() && !window->fileName().startsWith(QcbsMainWindow::untitledPrefix()))
            names << QFileInfo(window->fileName()).fileName();
    names.sort();
    return names;
}

QStringList comboItems(const QComboBox* combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

const QByteArray smallCif = "data_a\n"
                            "_cell_length_a 5.0\n"
                            "_cell_length_b\n"
                            " 6.0\n"
                            "loop_\n"
                            "_atom_site_label\n"
                            "_atom_site_type_symbol\n"
                            "C1 C\n"
                            "O1 O\n"
                            "# end of atoms\n"
                            "_cell_angle_alpha 90\n"
                            "data_b\n"
                            "_cell_length_a 7.0\n";

} // namespace

class QcbsMainWindowRoutesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void commandLineFiles_data();
    void commandLineFiles();
    void droppedFiles_data();
    void droppedFiles();
    void helpRoutes_data();
    void helpRoutes();
    void itemHelpWithoutName_data();
    void itemHelpWithoutName();
    void closeRequested_data();
    void closeRequested();
    void newFromTemplate_data();
    void newFromTemplate();
    void blockCombo_data();
    void blockCombo();
    void editsFromTools_data();
    void editsFromTools();

private:
    RouteWindow* newWindow(const HQcbsAppState& state = {});
    QString makeFile(const QString& name, const QByteArray& bytes = "data_x\n_cell_length_a 1.0\n");
    static void setReuseWindow(bool on);

    IsolatedSettings settings_;
    HQcbsAppState state_;
    QTemporaryDir dir_;
};

void QcbsMainWindowRoutesTest::initTestCase()
{
    state_ = HQcbsAppState(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    QVERIFY(dir_.isValid());
}

void QcbsMainWindowRoutesTest::init()
{
    settings_.clear();
    QcbsMainWindow::preferences() = QcbsPreferences();
    RouteWindow::shown.clear();
    RouteWindow::answers.clear();
    RouteWindow::opened.clear();
    RouteWindow::openerWorks = true;
}

void QcbsMainWindowRoutesTest::cleanup()
{
    QList<QPointer<QcbsMainWindow>> open;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget))
            open << window;
    for (const QPointer<QcbsMainWindow>& window : open)
        delete window.data();
    QcbsMainWindow::preferences() = QcbsPreferences();
}

RouteWindow* QcbsMainWindowRoutesTest::newWindow(const HQcbsAppState& state)
{
    auto* window = new RouteWindow(state ? state : state_);
    window->show();
    return window;
}

QString QcbsMainWindowRoutesTest::makeFile(const QString& name, const QByteArray& bytes)
{
    const QString path = dir_.filePath(name);
    writeBytes(path, bytes);
    return path;
}

// Every window reads the preferences from the store when it is built, so the switch is stored.
void QcbsMainWindowRoutesTest::setReuseWindow(bool on)
{
    QcbsMainWindow::preferences().reuseWindow = on;
    QcbsMainWindow::preferences().write();
}

// --- files on the command line -------------------------------------------------------------------

void QcbsMainWindowRoutesTest::commandLineFiles_data()
{
    QTest::addColumn<bool>("reuse");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("windows");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("loaded");
    QTest::addColumn<QString>("status");

    const QString single = QStringLiteral("Information|Your preferences are set for single window mode, only "
                                          "the first CIF will be opened.|window hidden");
    QTest::newRow("one file") << false << QStringList{"a.cif"} << 1 << QStringList() << QStringList{"a.cif"}
                              << "Ready";
    QTest::newRow("reuse window: only the first of three")
        << true << QStringList{"a.cif", "b.cif", "c.cif"} << 1 << QStringList{single} << QStringList{"a.cif"}
        << "Ready";
    QTest::newRow("multiple windows: one each")
        << false << QStringList{"a.cif", "b.cif", "c.cif"} << 3 << QStringList()
        << QStringList{"a.cif", "b.cif", "c.cif"} << "Ready";
    QTest::newRow("first file cannot be opened")
        << false << QStringList{"missing.cif"} << 1 << QStringList() << QStringList()
        << "Error: Could not open file \"{dir}/missing.cif\"";
    QTest::newRow("later file cannot be opened")
        << false << QStringList{"a.cif", "missing.cif", "b.cif"} << 2 << QStringList()
        << QStringList{"a.cif", "b.cif"} << "Error: Could not open file \"{dir}/missing.cif\"";
    // The first window stays blank and so counts as reusable whatever the preference says.
    QTest::newRow("blank first window stops the list")
        << false << QStringList{"missing.cif", "a.cif", "b.cif"} << 1 << QStringList{single} << QStringList()
        << "Error: Could not open file \"{dir}/missing.cif\"";
}

void QcbsMainWindowRoutesTest::commandLineFiles()
{
    QFETCH(bool, reuse);
    QFETCH(QStringList, files);
    QFETCH(int, windows);
    QFETCH(QStringList, boxes);
    QFETCH(QStringList, loaded);
    QFETCH(QString, status);
    setReuseWindow(reuse);
    QStringList paths;
    for (const QString& name : files)
        paths << (name == QLatin1String("missing.cif") ? dir_.filePath(name) : makeFile(name));
    QFile::remove(dir_.filePath(QStringLiteral("missing.cif")));

    RouteWindow* first = newWindow();
    ModalCatcher catcher(first);
    QcbsApplication::openCommandLineFiles(first, paths);

    QCOMPARE(catcher.seen, boxes);
    QVERIFY(first->isVisible());
    QCOMPARE(openWindows().size(), windows);
    QCOMPARE(loadedNames(), loaded);
    QCOMPARE(first->statusBar()->currentMessage(), QString(status).replace("{dir}", dir_.path()));
    if (!loaded.isEmpty())
        QCOMPARE(first->windowTitle(), QStringLiteral("Cifward - ") + loaded.first());
    QVERIFY(RouteWindow::shown.isEmpty());
}

// --- drag and drop -------------------------------------------------------------------------------

void QcbsMainWindowRoutesTest::droppedFiles_data()
{
    QTest::addColumn<bool>("reuse");
    QTest::addColumn<bool>("preload");
    QTest::addColumn<bool>("onEditor");
    QTest::addColumn<QStringList>("dropped");
    QTest::addColumn<int>("windows");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("loaded");

    const QString single = QStringLiteral(
        "Cifward|Your preferences are set for single window mode, only one file can be dropped in.");
    QTest::newRow("one file on the window")
        << false << false << false << QStringList{"a.cif"} << 1 << QStringList() << QStringList{"a.cif"};
    QTest::newRow("one file on the editor")
        << false << false << true << QStringList{"a.cif"} << 1 << QStringList() << QStringList{"a.cif"};
    QTest::newRow("reuse window replaces the document")
        << true << true << true << QStringList{"a.cif"} << 1 << QStringList() << QStringList{"a.cif"};
    QTest::newRow("reuse window refuses two") << true << false << true << QStringList{"a.cif", "b.cif"} << 1
                                              << QStringList{single} << QStringList();
    QTest::newRow("multiple windows: a new one each")
        << false << true << false << QStringList{"a.cif", "b.cif"} << 3 << QStringList()
        << QStringList{"a.cif", "b.cif", "held.cif"};
    QTest::newRow("multiple windows: blank window takes the first")
        << false << false << true << QStringList{"a.cif", "b.cif"} << 2 << QStringList()
        << QStringList{"a.cif", "b.cif"};
    QTest::newRow("web address is not a file")
        << false << false << true << QStringList{"http://example.org/a.cif"} << 1 << QStringList()
        << QStringList();
}

void QcbsMainWindowRoutesTest::droppedFiles()
{
    QFETCH(bool, reuse);
    QFETCH(bool, preload);
    QFETCH(bool, onEditor);
    QFETCH(QStringList, dropped);
    QFETCH(int, windows);
    QFETCH(QStringList, boxes);
    QFETCH(QStringList, loaded);
    setReuseWindow(reuse);
    RouteWindow* window = newWindow();
    if (preload)
        QVERIFY(window->fileOpen(makeFile(QStringLiteral("held.cif")), false));

    QList<QUrl> urls;
    bool anyLocal = false;
    for (const QString& name : dropped) {
        const bool remote = name.contains(QLatin1Char(':'));
        anyLocal = anyLocal || !remote;
        urls << (remote ? QUrl(name) : QUrl::fromLocalFile(makeFile(name)));
    }
    QMimeData data;
    data.setUrls(urls);
    QWidget* target = onEditor ? window->editor()->viewport() : static_cast<QWidget*>(window);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (anyLocal)
        QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);

    QStringList seen;
    for (const RouteWindow::Shown& s : RouteWindow::shown)
        seen << s.title + QLatin1Char('|') + s.text;
    QCOMPARE(seen, boxes);
    QCOMPARE(openWindows().size(), windows);
    QCOMPARE(loadedNames(), loaded);
    if (!preload && !loaded.isEmpty())
        QCOMPARE(window->fileName(), dir_.filePath(loaded.first()));
    if (!anyLocal)
        QVERIFY(window->editor()->document()->isEmpty());
}

// --- help ----------------------------------------------------------------------------------------

void QcbsMainWindowRoutesTest::helpRoutes_data()
{
    QTest::addColumn<QStringList>("pages");
    QTest::addColumn<bool>("removeStartPage");
    QTest::addColumn<bool>("openerWorks");
    QTest::addColumn<QString>("route");
    QTest::addColumn<QStringList>("opened");
    QTest::addColumn<QString>("box");

    const QString home = QString::fromStdString(programHomePage());
    const QString page = QStringLiteral("cifward/PortableHTML/cifward-1-062.html");
    QTest::newRow("help opens the start page") << QStringList{"Cifward.html"} << false << true << "help"
                                               << QStringList{"{docs}/Cifward.html"} << QString();
    QTest::newRow("help prefers the compiled help")
        << QStringList{"Cifward.html", "Cifward.chm"} << false << true << "help"
        << QStringList{"{docs}/Cifward.chm"} << QString();
    QTest::newRow("help falls back to the start page, which fails too")
        << QStringList{"Cifward.html", "Cifward.chm"} << false << false << "help"
        << QStringList{"{docs}/Cifward.chm", "{docs}/Cifward.html"}
        << "Sorry - Cannot open the Cifward Documentation in your web browser:\n\n{docs}/Cifward.html";
    QTest::newRow("help when the start page has gone")
        << QStringList{"Cifward.html"} << true << true << "help" << QStringList()
        << "Sorry - Cannot find the Cifward Documentation:\n\n{docs}/Cifward.html";
    QTest::newRow("help without documentation") << QStringList() << false << true << "help" << QStringList()
                                                << "Sorry - Cannot find the Cifward Documentation:\n\n*";
    QTest::newRow("page of a finding") << QStringList{"Cifward.html", page} << false << true << "finding"
                                       << QStringList{"{docs}/" + page} << QString();
    QTest::newRow("page of a finding that is missing")
        << QStringList{"Cifward.html"} << false << true << "finding" << QStringList()
        << "Sorry - Cannot find the Cifward Documentation:\n\n{docs}/" + page;
    QTest::newRow("home page") << QStringList() << false << true << "home" << QStringList{home} << QString();
    QTest::newRow("home page cannot be shown")
        << QStringList() << false << false << "home" << QStringList{home}
        << "Sorry - Cannot load the Cifward Home Page in your web browser:\n\n" + home;
}

void QcbsMainWindowRoutesTest::helpRoutes()
{
    QFETCH(QStringList, pages);
    QFETCH(bool, removeStartPage);
    QFETCH(bool, openerWorks);
    QFETCH(QString, route);
    QFETCH(QStringList, opened);
    QFETCH(QString, box);
    // A program of its own in a fresh directory, so that the documentation search sees only
    // what this row lays out.
    QTemporaryDir install;
    QVERIFY(install.isValid());
    const QString docs = install.filePath(QStringLiteral("bin/docs"));
    QDir().mkpath(docs);
    for (const QString& page : pages)
        writeBytes(docs + QLatin1Char('/') + page, "<html></html>\n");
    HQcbsAppState state(new QcbsAppState(QFileInfo(install.filePath(QStringLiteral("bin/cifward")))));
    QCOMPARE(state->documentationDirectory(), pages.isEmpty() ? QString() : docs);
    if (removeStartPage)
        QVERIFY(QFile::remove(docs + QStringLiteral("/Cifward.html")));

    RouteWindow* window = newWindow(state);
    RouteWindow::openerWorks = openerWorks;
    if (route == QLatin1String("help")) {
        window->help();
    } else if (route == QLatin1String("home")) {
        window->cifwardHomePage();
    } else {
        // Code 302 is a finding with a page of its own; asking for help on it is the list's route.
        window->errorList()->addError(QStringLiteral("Data block name missing"), 3, 302);
        QTreeWidgetItem* finding = window->errorList()->root(QcbsErrorListView::Errors)->child(0);
        QVERIFY(finding);
        window->errorList()->showHelp(finding, QPoint(), 1);
    }

    QStringList asked;
    for (const QUrl& url : RouteWindow::opened)
        asked << (url.isLocalFile() ? url.toLocalFile() : url.toString());
    QCOMPARE(asked, opened.replaceInStrings(QStringLiteral("{docs}"), docs));
    if (box.isEmpty()) {
        QCOMPARE(RouteWindow::shown.size(), 0);
        return;
    }
    QCOMPARE(RouteWindow::shown.size(), 1);
    QCOMPARE(RouteWindow::shown.first().title, QStringLiteral("Cifward"));
    box.replace(QStringLiteral("{docs}"), docs);
    if (box.endsWith(QLatin1Char('*')))
        QVERIFY2(RouteWindow::shown.first().text.startsWith(box.chopped(1)),
                 qPrintable(RouteWindow::shown.first().text));
    else
        QCOMPARE(RouteWindow::shown.first().text, box);
}

// --- item help and closing -----------------------------------------------------------------------

void QcbsMainWindowRoutesTest::itemHelpWithoutName_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("box");
    const QString none = QStringLiteral(
        "Data item help|No help available. Be sure to place cursor on a line containing a data item.");
    const QString named = QStringLiteral("Cifward|Feature not available in this version");
    QTest::newRow("block header") << 1 << none;
    QTest::newRow("comment") << 4 << none;
    QTest::newRow("blank line after a comment") << 5 << none;
    QTest::newRow("loop keyword") << 6 << none;
    QTest::newRow("values of a loop") << 9 << none;
    // A blank line takes the name of the line above it; only the name route goes further.
    QTest::newRow("blank line after a data name") << 3 << named;
    QTest::newRow("data name with value") << 2 << named;
}

void QcbsMainWindowRoutesTest::itemHelpWithoutName()
{
    QFETCH(int, line);
    QFETCH(QString, box);
    RouteWindow* window = newWindow();
    window->editor()->setPlainText(QStringLiteral("data_a\n_cell_length_a 5.0\n\n# atoms\n\nloop_\n"
                                                  "_atom_site_label\n_atom_site_type_symbol\nC1 C\n"));
    window->editor()->setTextCursor(QTextCursor(window->editor()->document()->findBlockByNumber(line - 1)));
    window->dataitemHelp();
    QCOMPARE(RouteWindow::shown.size(), 1);
    QCOMPARE(RouteWindow::shown.first().title + QLatin1Char('|') + RouteWindow::shown.first().text, box);
}

void QcbsMainWindowRoutesTest::closeRequested_data()
{
    QTest::addColumn<int>("windows");
    QTest::addColumn<bool>("loaded");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("renewed");
    QTest::addColumn<int>("questions");
    QTest::newRow("one window, empty editor") << 1 << false << QString() << false << false << 0;
    QTest::newRow("one window, file loaded") << 1 << true << QString() << false << true << 0;
    QTest::newRow("one window, text typed") << 1 << false << "data_typed" << false << true << 1;
    QTest::newRow("two windows") << 2 << true << QString() << true << false << 0;
    QTest::newRow("two windows, text typed") << 2 << false << "data_typed" << true << false << 1;
}

void QcbsMainWindowRoutesTest::closeRequested()
{
    QFETCH(int, windows);
    QFETCH(bool, loaded);
    QFETCH(QString, typed);
    QFETCH(bool, closes);
    QFETCH(bool, renewed);
    QFETCH(int, questions);
    QPointer<RouteWindow> window = newWindow();
    QPointer<RouteWindow> other = windows > 1 ? newWindow() : nullptr;
    if (loaded)
        QVERIFY(window->fileOpen(makeFile(QStringLiteral("close.cif")), false));
    if (!typed.isEmpty())
        window->editor()->insertPlainText(typed);
    const QString before = window->fileName();
    RouteWindow::answers = {QMessageBox::No};

    window->fileCloseRequested();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QCOMPARE(RouteWindow::shown.size(), questions);
    if (questions)
        QCOMPARE(RouteWindow::shown.first().text, QStringLiteral("Save changes to current file?"));
    QCOMPARE(window.isNull(), closes);
    QCOMPARE(openWindows().size(), closes ? windows - 1 : windows);
    if (closes) {
        QVERIFY(other && other->isVisible());
        return;
    }
    QCOMPARE(window->fileName() != before, renewed);
    QVERIFY(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()));
    QVERIFY(window->editor()->document()->isEmpty());
    QVERIFY(window->windowTitle().startsWith(QStringLiteral("Cifward - untitled")));
}

// --- a new file from the template ----------------------------------------------------------------

void QcbsMainWindowRoutesTest::newFromTemplate_data()
{
    QTest::addColumn<QString>("templateName");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("status");
    const QByteArray journal = "data_template\n_journal_name_full ?\n_journal_year ?\n";
    QTest::newRow("template loads") << "template.cif" << journal << QString::fromLatin1(journal)
                                    << "(Note, template files are not automatically parsed for errors)"
                                    << "Ready";
    QTest::newRow("CR LF template") << "crlf.cif" << QByteArray("data_t\r\n_x ?\r\n") << "data_t\n_x ?\n"
                                    << "(Note, template files are not automatically parsed for errors)"
                                    << "Ready";
    QTest::newRow("template missing")
        << "absent.cif" << QByteArray() << QString() << "Starting new file \"untitled"
        << "Could not open template file";
    QTest::newRow("no template named") << "" << QByteArray() << QString() << "Starting new file \"untitled"
                                       << "Could not open template file";
}

void QcbsMainWindowRoutesTest::newFromTemplate()
{
    QFETCH(QString, templateName);
    QFETCH(QByteArray, contents);
    QFETCH(QString, text);
    QFETCH(QString, note);
    QFETCH(QString, status);
    QString path;
    if (!templateName.isEmpty()) {
        path = dir_.filePath(templateName);
        QFile::remove(path);
        if (!contents.isEmpty())
            writeBytes(path, contents);
    }
    RouteWindow* window = newWindow();
    window->outputPane()->clear();
    QcbsMainWindow::preferences().startWithTemplate = true;
    QcbsMainWindow::preferences().templateFilename = path;

    window->fileNew(true);

    QCOMPARE(window->editor()->toPlainText(), text);
    QVERIFY2(window->outputPane()->toPlainText().contains(note),
             qPrintable(window->outputPane()->toPlainText()));
    QCOMPARE(window->statusBar()->currentMessage(), status);
    QCOMPARE(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()), text.isEmpty());
    QCOMPARE(window->editor()->document()->isModified(), false);
    // A template is not checked on loading, so checking it must be offered.
    QAction* check = window->findChild<QAction*>(QStringLiteral("reparse"));
    QVERIFY(check);
    QCOMPARE(check->isEnabled(), !text.isEmpty());
    QVERIFY(RouteWindow::shown.isEmpty());
}

// --- the block combo -----------------------------------------------------------------------------

void QcbsMainWindowRoutesTest::blockCombo_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("select");
    QTest::addColumn<int>("line");
    QTest::newRow("no blocks") << "# nothing but a comment\n" << QStringList{"Blocks:  none"} << -1 << 0;
    QTest::newRow("one block") << "data_only\n_cell_length_a 5.0\n"
                               << QStringList{"Blocks:   1", "data_only"} << 1 << 1;
    QTest::newRow("three blocks") << "data_a\n_x 1\n\ndata_b\n_x 2\n# c next\ndata_c\n_x 3\n"
                                  << QStringList{"Blocks:   3", "data_a", "data_b", "data_c"} << 3 << 7;
    QTest::newRow("middle block") << "data_a\n_x 1\n\ndata_b\n_x 2\n# c next\ndata_c\n_x 3\n"
                                  << QStringList{"Blocks:   3", "data_a", "data_b", "data_c"} << 2 << 4;
    QTest::newRow("items before the first block counted")
        << "_x 1\ndata_b\n_y 2\n"
        << QStringList{"Blocks:   2", "data_added_by_cifward", "data_b"} << 2 << 2;
    QTest::newRow("the hidden name alone") << "data_added_by_ciphward\n_x 1\n"
                                           << QStringList{"Blocks:  none"} << -1 << 0;
    QTest::newRow("the hidden name first") << "data_added_by_ciphward\n_x 1\ndata_real\n_y 2\n"
                                           << QStringList{"Blocks:   1", "", "data_real"} << 2 << 3;
}

void QcbsMainWindowRoutesTest::blockCombo()
{
    QFETCH(QString, text);
    QFETCH(QStringList, items);
    QFETCH(int, select);
    QFETCH(int, line);
    RouteWindow* window = newWindow();
    window->editor()->setPlainText(text);
    window->reparse();
    QComboBox* combo = window->blockCombo();
    QCOMPARE(comboItems(combo), items);
    QCOMPARE(combo->isEnabled(), items.size() > 1);
    if (select < 0)
        return;
    window->editor()->moveCursor(QTextCursor::End);
    combo->setCurrentIndex(select);
    emit combo->activated(select);
    QCOMPARE(window->editor()->textCursor().blockNumber() + 1, line);
    QCOMPARE(window->statusLine().section(QLatin1Char(','), 0, 0), QStringLiteral("Line %1").arg(line));
}

// --- edits handed back by the tools --------------------------------------------------------------

void QcbsMainWindowRoutesTest::editsFromTools_data()
{
    QTest::addColumn<QString>("route");
    QTest::addColumn<int>("cursorLine");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("source");

    const QString original = QString::fromLatin1(smallCif);
    QTest::newRow("item value in place")
        << "item" << 1 << QStringList{"data_a", "_cell_length_a", "5.5"}
        << QString(original).replace("_cell_length_a 5.0", "_cell_length_a 5.5") << original;
    QTest::newRow("item in the second block")
        << "item" << 1 << QStringList{"data_b", "_cell_length_a", "7.25(3)"}
        << QString(original).replace("_cell_length_a 7.0", "_cell_length_a 7.25(3)") << original;
    QTest::newRow("item with a quoted value")
        << "item" << 1 << QStringList{"data_a", "_cell_angle_alpha", "'near 90'"}
        << QString(original).replace("_cell_angle_alpha 90", "_cell_angle_alpha 'near 90'") << original;
    QTest::newRow("item whose value is on the next line")
        << "item" << 1 << QStringList{"data_a", "_cell_length_b", "6.6"}
        << QString(original).replace("_cell_length_b\n", "_cell_length_b\n6.6\n") << original;
    // Block names are case-insensitive and a header line may carry a comment.
    QTest::newRow("block header with a comment")
        << "item" << 1 << QStringList{"data_b", "_cell_length_a", "7.1"}
        << QString(original).replace("data_b\n_cell_length_a 7.0", "data_b   # second\n_cell_length_a 7.1")
        << QString(original).replace("data_b\n", "data_b   # second\n");
    QTest::newRow("block header in capitals")
        << "item" << 1 << QStringList{"data_b", "_cell_length_a", "7.1"}
        << QString(original).replace("data_b\n_cell_length_a 7.0", "DATA_B\n_cell_length_a 7.1")
        << QString(original).replace("data_b\n", "DATA_B\n");
    QTest::newRow("item not in that block")
        << "item" << 1 << QStringList{"data_b", "_cell_length_b", "1.0"} << original << original;
    QTest::newRow("block not in the file")
        << "item" << 1 << QStringList{"data_z", "_cell_length_a", "1.0"} << original << original;
    QTest::newRow("loop with a row added")
        << "loop" << 8 << QStringList{"loop_\n_atom_site_label\n_atom_site_type_symbol\nC1 C\nO1 O\nN1 N\n"}
        << QString(original).replace("O1 O\n", "O1 O\nN1 N\n") << original;
    QTest::newRow("loop from its keyword line")
        << "loop" << 5 << QStringList{"loop_\n_atom_site_label\nX1\n"}
        << QString(original).replace("_atom_site_label\n_atom_site_type_symbol\nC1 C\nO1 O\n",
                                     "_atom_site_label\nX1\n")
        << original;
    QTest::newRow("last block replaced")
        << "block" << 13 << QStringList{"data_b\n_cell_length_a 7.5\n_cell_length_c 3.0\n"}
        << QString(original).replace("data_b\n_cell_length_a 7.0\n",
                                     "data_b\n_cell_length_a 7.5\n_cell_length_c 3.0\n")
        << original;
    QTest::newRow("first block replaced") << "block" << 3 << QStringList{"data_a\n_cell_length_a 4.0\n"}
                                          << "data_a\n_cell_length_a 4.0\ndata_b\n_cell_length_a 7.0\n"
                                          << original;
}

void QcbsMainWindowRoutesTest::editsFromTools()
{
    QFETCH(QString, route);
    QFETCH(int, cursorLine);
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    QFETCH(QString, source);
    RouteWindow* window = newWindow();
    QVERIFY(window->fileOpen(makeFile(QStringLiteral("edit.cif"), source.toLatin1()), false));
    window->editor()->setTextCursor(
        QTextCursor(window->editor()->document()->findBlockByNumber(cursorLine - 1)));

    if (route == QLatin1String("item"))
        window->dataItemUpdate(arguments.at(0), arguments.at(1), arguments.at(2));
    else if (route == QLatin1String("loop"))
        window->loopUpdate(arguments.at(0));
    else
        window->blockUpdate(arguments.at(0));

    QCOMPARE(window->editor()->toPlainText(), expected);
    QVERIFY(RouteWindow::shown.isEmpty());
    if (expected == source)
        return;
    // The changed text is checked again at once, so the block list follows it.
    QVERIFY(window->editor()->parsed());
    QVERIFY(window->document());
    QStringList blocks;
    for (std::size_t i = 0; i < window->document()->block_count(); ++i)
        blocks << QString::fromStdString(window->document()->block(i).name());
    QCOMPARE(blocks.size(), 2);
    QCOMPARE(blocks.first(), QStringLiteral("data_a"));
    QCOMPARE(blocks.last().toLower(), QStringLiteral("data_b"));
}

QTEST_MAIN(QcbsMainWindowRoutesTest)
#include "QcbsMainWindowRoutesTest.moc"
