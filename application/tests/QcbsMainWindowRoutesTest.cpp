#include "MainWindowTestSupport.h"
#include "ProgramInfo.h"
#include "QcbsApplication.h"
#include "QcbsDataItemInfo.h"
#include "QcbsErrorListView.h"
#include "QcbsOutputPane.h"
#include "QcbsRichTextEdit.h"

#include <QAction>
#include <QComboBox>
#include <QDropEvent>
#include <QMimeData>
#include <QStatusBar>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidgetItem>

namespace {

// The start-up box of single-window mode is a plain application box with no window to answer
// for it: it is closed from the event loop it runs, and its title and text are kept, with
// whether `behind` was out of sight while it showed.
class ModalCatcher {
public:
    explicit ModalCatcher(QWidget* behind)
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, behind] {
            QWidget* modal = QApplication::activeModalWidget();
            if (auto* box = qobject_cast<QMessageBox*>(modal)) {
                seen << box->windowTitle() + '|' + box->text() +
                            (behind->isVisible() ? QStringLiteral("|window shown")
                                                 : QStringLiteral("|window hidden"));
                box->accept();
            } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
                seen << QStringLiteral("unexpected dialog");
                dialog->reject();
            }
        });
        timer_.start(20);
    }
    QStringList seen;

private:
    QTimer timer_;
};

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

QStringList shownBoxes()
{
    QStringList seen;
    for (const ScriptedWindow::Shown& s : ScriptedWindow::shown)
        seen << s.title + '|' + s.text;
    return seen;
}

// Every window reads the preferences from the store when it is built, so the switch is stored.
void setReuseWindow(bool on)
{
    QcbsMainWindow::preferences().reuseWindow = on;
    QcbsMainWindow::preferences().write();
}

const QString smallCif =
    QStringLiteral("data_a\n_cell_length_a 5.0\n_cell_length_b\n 6.0\nloop_\n_atom_site_label\n"
                   "_atom_site_type_symbol\nC1 C\nO1 O\n# end of atoms\n_cell_angle_alpha 90\n"
                   "data_b\n_cell_length_a 7.0\n");

struct LineCase {
    bool reuse;
    QStringList files;
    int windows;
    bool box;
    QStringList loaded;
    QString status;
};
struct DropCase {
    bool reuse, preload, onEditor;
    QStringList dropped;
    int windows;
    QString box;
    QStringList loaded;
};
struct HelpCase {
    QStringList pages;
    bool removeStartPage, openerWorks;
    QString route;
    QStringList opened;
    QString box; // a trailing '*': only the start of the text
};
struct CloseCase {
    int windows;
    bool loaded, typed, closes, renewed;
};
struct TemplateCase {
    QString name;
    QByteArray contents;
    QString text, note, status;
};
struct ComboCase {
    QString text;
    QStringList items;
    int select, line;
};
struct EditCase {
    QString route;
    int cursorLine;
    QStringList arguments;
    QString expected, source;
};

} // namespace

Q_DECLARE_METATYPE(LineCase)
Q_DECLARE_METATYPE(DropCase)
Q_DECLARE_METATYPE(HelpCase)
Q_DECLARE_METATYPE(CloseCase)
Q_DECLARE_METATYPE(TemplateCase)
Q_DECLARE_METATYPE(ComboCase)
Q_DECLARE_METATYPE(EditCase)

class QcbsMainWindowRoutesTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void commandLineFiles_data()
    {
        const QString missing = QStringLiteral("Error: Could not open file \"{dir}/missing.cif\"");
        addRows<LineCase>({
            {"one file", {false, {"a.cif"}, 1, false, {"a.cif"}, "Ready"}},
            {"reuse window: only the first of three",
             {true, {"a.cif", "b.cif", "c.cif"}, 1, true, {"a.cif"}, "Ready"}},
            {"multiple windows: one each",
             {false, {"a.cif", "b.cif", "c.cif"}, 3, false, {"a.cif", "b.cif", "c.cif"}, "Ready"}},
            {"first file cannot be opened", {false, {"missing.cif"}, 1, false, {}, missing}},
            {"later file cannot be opened",
             {false, {"a.cif", "missing.cif", "b.cif"}, 2, false, {"a.cif", "b.cif"}, missing}},
            // The first window stays blank and so counts as reusable whatever the preference says.
            {"blank first window stops the list",
             {false, {"missing.cif", "a.cif", "b.cif"}, 1, true, {}, missing}},
        });
    }
    void commandLineFiles()
    {
        QFETCH(LineCase, row);
        setReuseWindow(row.reuse);
        QStringList paths;
        for (const QString& name : row.files)
            paths << (name == QLatin1String("missing.cif") ? fx_.path(name) : fx_.makeFile(name));

        ScriptedWindow* first = fx_.newWindow();
        ModalCatcher catcher(first);
        QcbsApplication::openCommandLineFiles(first, paths);

        const QString single = QStringLiteral("Information|Your preferences are set for single window mode, "
                                              "only the first CIF will be opened.|window hidden");
        QCOMPARE(catcher.seen, row.box ? QStringList{single} : QStringList());
        QVERIFY(first->isVisible());
        QCOMPARE(openWindows().size(), row.windows);
        QCOMPARE(loadedNames(), row.loaded);
        QCOMPARE(first->statusBar()->currentMessage(), row.status.replace("{dir}", fx_.path()));
        if (!row.loaded.isEmpty())
            QCOMPARE(first->windowTitle(), QStringLiteral("Cifward - ") + row.loaded.first());
        QVERIFY(ScriptedWindow::shown.isEmpty());
    }

    void droppedFiles_data()
    {
        const QString single = QStringLiteral(
            "Cifward|Your preferences are set for single window mode, only one file can be dropped in.");
        addRows<DropCase>({
            {"one file on the window", {false, false, false, {"a.cif"}, 1, {}, {"a.cif"}}},
            {"one file on the editor", {false, false, true, {"a.cif"}, 1, {}, {"a.cif"}}},
            {"reuse window replaces the document", {true, true, true, {"a.cif"}, 1, {}, {"a.cif"}}},
            {"reuse window refuses two", {true, false, true, {"a.cif", "b.cif"}, 1, single, {}}},
            {"multiple windows: a new one each",
             {false, true, false, {"a.cif", "b.cif"}, 3, {}, {"a.cif", "b.cif", "held.cif"}}},
            {"multiple windows: blank window takes the first",
             {false, false, true, {"a.cif", "b.cif"}, 2, {}, {"a.cif", "b.cif"}}},
            {"web address is not a file", {false, false, true, {"http://example.org/a.cif"}, 1, {}, {}}},
        });
    }
    void droppedFiles()
    {
        QFETCH(DropCase, row);
        setReuseWindow(row.reuse);
        ScriptedWindow* window = fx_.newWindow();
        if (row.preload)
            QVERIFY(window->fileOpen(fx_.makeFile(QStringLiteral("held.cif")), false));

        QList<QUrl> urls;
        bool anyLocal = false;
        for (const QString& name : row.dropped) {
            const bool remote = name.contains(':');
            anyLocal = anyLocal || !remote;
            urls << (remote ? QUrl(name) : QUrl::fromLocalFile(fx_.makeFile(name)));
        }
        QMimeData data;
        data.setUrls(urls);
        QWidget* target = row.onEditor ? window->editor()->viewport() : static_cast<QWidget*>(window);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        if (anyLocal)
            QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &drop);

        QCOMPARE(shownBoxes(), row.box.isEmpty() ? QStringList() : QStringList{row.box});
        QCOMPARE(openWindows().size(), row.windows);
        QCOMPARE(loadedNames(), row.loaded);
        if (!row.preload && !row.loaded.isEmpty())
            QCOMPARE(window->fileName(), fx_.path(row.loaded.first()));
        if (!anyLocal)
            QVERIFY(window->editor()->document()->isEmpty());
    }

    void helpRoutes_data()
    {
        const QString home = QString::fromStdString(programHomePage());
        const QString page = QStringLiteral("cifward/PortableHTML/cifward-1-062.html");
        const QString notFound = QStringLiteral("Sorry - Cannot find the Cifward Documentation:\n\n");
        const QStringList html = {"Cifward.html"}, both = {"Cifward.html", "Cifward.chm"};
        addRows<HelpCase>({
            {"help opens the start page", {html, false, true, "help", {"{docs}/Cifward.html"}, {}}},
            {"help prefers the compiled help", {both, false, true, "help", {"{docs}/Cifward.chm"}, {}}},
            {"help falls back to the start page, which fails too",
             {both,
              false,
              false,
              "help",
              {"{docs}/Cifward.chm", "{docs}/Cifward.html"},
              "Sorry - Cannot open the Cifward Documentation in your web browser:\n\n{docs}/Cifward.html"}},
            {"help when the start page has gone",
             {html, true, true, "help", {}, notFound + "{docs}/Cifward.html"}},
            {"help without documentation", {{}, false, true, "help", {}, notFound + "*"}},
            {"page of a finding", {{"Cifward.html", page}, false, true, "finding", {"{docs}/" + page}, {}}},
            {"page of a finding that is missing",
             {html, false, true, "finding", {}, notFound + "{docs}/" + page}},
            {"home page", {{}, false, true, "home", {home}, {}}},
            {"home page cannot be shown",
             {{},
              false,
              false,
              "home",
              {home},
              "Sorry - Cannot load the Cifward Home Page in your web browser:\n\n" + home}},
        });
    }
    void helpRoutes()
    {
        QFETCH(HelpCase, row);
        // A program of its own in a fresh directory, so that the documentation search sees only
        // what this row lays out.
        QTemporaryDir install;
        const QString docs = install.filePath(QStringLiteral("bin/docs"));
        QDir().mkpath(docs);
        for (const QString& page : row.pages)
            writeBytes(docs + '/' + page, "<html></html>\n");
        HQcbsAppState state(new QcbsAppState(QFileInfo(install.filePath(QStringLiteral("bin/cifward")))));
        QCOMPARE(state->documentationDirectory(), row.pages.isEmpty() ? QString() : docs);
        if (row.removeStartPage)
            QVERIFY(QFile::remove(docs + QStringLiteral("/Cifward.html")));

        ScriptedWindow* window = fx_.newWindow(state);
        ScriptedWindow::openerWorks = row.openerWorks;
        if (row.route == QLatin1String("help")) {
            window->help();
        } else if (row.route == QLatin1String("home")) {
            window->cifwardHomePage();
        } else {
            // Code 302 is a finding with a page of its own; asking for help on it is the list's route.
            window->errorList()->addError(QStringLiteral("Data block name missing"), 3, 302);
            QTreeWidgetItem* finding = window->errorList()->root(QcbsErrorListView::Errors)->child(0);
            QVERIFY(finding);
            window->errorList()->showHelp(finding, QPoint(), 1);
        }

        QStringList asked;
        for (const QUrl& url : ScriptedWindow::opened)
            asked << (url.isLocalFile() ? url.toLocalFile() : url.toString());
        QCOMPARE(asked, row.opened.replaceInStrings(QStringLiteral("{docs}"), docs));
        QStringList expected, seen = shownBoxes();
        if (!row.box.isEmpty())
            expected << "Cifward|" + row.box.replace(QStringLiteral("{docs}"), docs);
        if (row.box.endsWith('*') && seen.size() == 1 && seen[0].startsWith(expected[0].chopped(1)))
            seen[0] = expected[0];
        QCOMPARE(seen, expected);
    }

    void itemHelpWithoutName_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("box");
        const QString none = QStringLiteral(
            "Data item help|No help available. Be sure to place cursor on a line containing a data item.");
        // The name route opens the help window instead of a box.
        const QString named;
        QTest::newRow("block header") << 1 << none;
        QTest::newRow("comment") << 4 << none;
        QTest::newRow("blank line after a comment") << 5 << none;
        QTest::newRow("loop keyword") << 6 << none;
        QTest::newRow("values of a loop") << 9 << none;
        // A blank line takes the name of the line above it; only the name route goes further.
        QTest::newRow("blank line after a data name") << 3 << named;
        QTest::newRow("data name with value") << 2 << named;
    }
    void itemHelpWithoutName()
    {
        QFETCH(int, line);
        QFETCH(QString, box);
        ScriptedWindow* window = fx_.newWindow();
        window->editor()->setPlainText(QStringLiteral("data_a\n_cell_length_a 5.0\n\n# atoms\n\nloop_\n"
                                                      "_atom_site_label\n_atom_site_type_symbol\nC1 C\n"));
        window->editor()->setTextCursor(
            QTextCursor(window->editor()->document()->findBlockByNumber(line - 1)));
        window->dataitemHelp();
        QCOMPARE(shownBoxes(), box.isEmpty() ? QStringList() : QStringList{box});
        const auto* help = window->findChild<QcbsDataItemInfo*>();
        QCOMPARE(help ? help->dataItemName() : QString(), box.isEmpty() ? "_cell_length_a" : QString());
    }

    void closeRequested_data()
    {
        addRows<CloseCase>({
            {"one window, empty editor", {1, false, false, false, false}},
            {"one window, file loaded", {1, true, false, false, true}},
            {"one window, text typed", {1, false, true, false, true}},
            {"two windows", {2, true, false, true, false}},
            {"two windows, text typed", {2, false, true, true, false}},
        });
    }
    void closeRequested()
    {
        QFETCH(CloseCase, row);
        QPointer<ScriptedWindow> window = fx_.newWindow();
        QPointer<ScriptedWindow> other = row.windows > 1 ? fx_.newWindow() : nullptr;
        if (row.loaded)
            QVERIFY(window->fileOpen(fx_.makeFile(QStringLiteral("close.cif")), false));
        if (row.typed)
            window->editor()->insertPlainText(QStringLiteral("data_typed"));
        const QString before = window->fileName();
        ScriptedWindow::answers = {QMessageBox::No};

        window->fileCloseRequested();

        QCOMPARE(openWindows().size(), row.closes ? row.windows - 1 : row.windows);
        QCOMPARE(ScriptedWindow::shown.size(), row.typed ? 1 : 0);
        if (row.typed)
            QCOMPARE(ScriptedWindow::shown.first().text, QStringLiteral("Save changes to current file?"));
        QCOMPARE(window.isNull(), row.closes);
        if (row.closes) {
            QVERIFY(other && other->isVisible());
            return;
        }
        QCOMPARE(window->fileName() != before, row.renewed);
        QVERIFY(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()));
        QVERIFY(window->editor()->document()->isEmpty());
        QVERIFY(window->windowTitle().startsWith(QStringLiteral("Cifward - untitled")));
    }

    void newFromTemplate_data()
    {
        const QString note = QStringLiteral("(Note, template files are not automatically parsed for errors)");
        const QString fresh = QStringLiteral("Starting new file \"untitled");
        const QString failed = QStringLiteral("Could not open template file");
        const QByteArray journal = "data_template\n_journal_name_full ?\n_journal_year ?\n";
        addRows<TemplateCase>({
            {"template loads", {"template.cif", journal, journal, note, "Ready"}},
            {"CR LF template", {"crlf.cif", "data_t\r\n_x ?\r\n", "data_t\n_x ?\n", note, "Ready"}},
            {"template missing", {"absent.cif", {}, {}, fresh, failed}},
            {"no template named", {{}, {}, {}, fresh, failed}},
        });
    }
    void newFromTemplate()
    {
        QFETCH(TemplateCase, row);
        const QString path = row.name.isEmpty() ? QString() : fx_.path(row.name);
        if (!row.contents.isEmpty())
            writeBytes(path, row.contents);
        ScriptedWindow* window = fx_.newWindow();
        window->outputPane()->clear();
        QcbsMainWindow::preferences().startWithTemplate = true;
        QcbsMainWindow::preferences().templateFilename = path;

        window->fileNew(true);

        QCOMPARE(window->editor()->toPlainText(), row.text);
        QVERIFY2(window->outputPane()->toPlainText().contains(row.note),
                 qPrintable(window->outputPane()->toPlainText()));
        QCOMPARE(window->statusBar()->currentMessage(), row.status);
        QCOMPARE(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()), row.text.isEmpty());
        QVERIFY(!window->editor()->document()->isModified());
        // A template is not checked on loading, so checking it must be offered.
        QCOMPARE(window->findChild<QAction*>(QStringLiteral("reparse"))->isEnabled(), !row.text.isEmpty());
        QVERIFY(ScriptedWindow::shown.isEmpty());
    }

    void blockCombo_data()
    {
        const QString three = QStringLiteral("data_a\n_x 1\n\ndata_b\n_x 2\n# c next\ndata_c\n_x 3\n");
        addRows<ComboCase>({
            {"no blocks", {"# nothing but a comment\n", {"Blocks:  none"}, -1, 0}},
            {"one block", {"data_only\n_cell_length_a 5.0\n", {"Blocks:   1", "data_only"}, 1, 1}},
            {"middle of three blocks", {three, {"Blocks:   3", "data_a", "data_b", "data_c"}, 2, 4}},
            {"last of three blocks", {three, {"Blocks:   3", "data_a", "data_b", "data_c"}, 3, 7}},
            {"items before the first block counted",
             {"_x 1\ndata_b\n_y 2\n", {"Blocks:   2", "data_added_by_cifward", "data_b"}, 2, 2}},
            {"the hidden name alone", {"data_added_by_ciphward\n_x 1\n", {"Blocks:  none"}, -1, 0}},
            {"the hidden name first",
             {"data_added_by_ciphward\n_x 1\ndata_real\n_y 2\n", {"Blocks:   1", "", "data_real"}, 2, 3}},
        });
    }
    void blockCombo()
    {
        QFETCH(ComboCase, row);
        ScriptedWindow* window = fx_.newWindow();
        window->editor()->setPlainText(row.text);
        window->reparse();
        QComboBox* combo = window->blockCombo();
        QStringList shown;
        for (int i = 0; i < combo->count(); ++i)
            shown << combo->itemText(i);
        QCOMPARE(shown, row.items);
        QCOMPARE(combo->isEnabled(), row.items.size() > 1);
        if (row.select < 0)
            return;
        window->editor()->moveCursor(QTextCursor::End);
        combo->setCurrentIndex(row.select);
        emit combo->activated(row.select);
        QCOMPARE(window->editor()->textCursor().blockNumber() + 1, row.line);
        QCOMPARE(window->statusLine().section(',', 0, 0), QStringLiteral("Line %1").arg(row.line));
    }

    void editsFromTools_data()
    {
        const QString o = smallCif;
        const auto with = [&o](const char* from, const char* to) { return QString(o).replace(from, to); };
        addRows<EditCase>({
            {"item value in place",
             {"item",
              1,
              {"data_a", "_cell_length_a", "5.5"},
              with("_cell_length_a 5.0", "_cell_length_a 5.5"),
              o}},
            {"item with a quoted value",
             {"item",
              1,
              {"data_a", "_cell_angle_alpha", "'near 90'"},
              with("_cell_angle_alpha 90", "_cell_angle_alpha 'near 90'"),
              o}},
            {"item whose value is on the next line",
             {"item",
              1,
              {"data_a", "_cell_length_b", "6.6"},
              with("_cell_length_b\n", "_cell_length_b\n6.6\n"),
              o}},
            // Block names are case-insensitive and a header line may carry a comment.
            {"block header with a comment",
             {"item",
              1,
              {"data_b", "_cell_length_a", "7.1"},
              with("data_b\n_cell_length_a 7.0", "data_b   # second\n_cell_length_a 7.1"),
              with("data_b\n", "data_b   # second\n")}},
            {"block header in capitals",
             {"item",
              1,
              {"data_b", "_cell_length_a", "7.25(3)"},
              with("data_b\n_cell_length_a 7.0", "DATA_B\n_cell_length_a 7.25(3)"),
              with("data_b\n", "DATA_B\n")}},
            {"item not in that block", {"item", 1, {"data_b", "_cell_length_b", "1.0"}, o, o}},
            {"block not in the file", {"item", 1, {"data_z", "_cell_length_a", "1.0"}, o, o}},
            {"loop with a row added",
             {"loop",
              8,
              {"loop_\n_atom_site_label\n_atom_site_type_symbol\nC1 C\nO1 O\nN1 N\n"},
              with("O1 O\n", "O1 O\nN1 N\n"),
              o}},
            {"loop from its keyword line",
             {"loop",
              5,
              {"loop_\n_atom_site_label\nX1\n"},
              with("_atom_site_label\n_atom_site_type_symbol\nC1 C\nO1 O\n", "_atom_site_label\nX1\n"),
              o}},
            {"last block replaced",
             {"block",
              13,
              {"data_b\n_cell_length_a 7.5\n_cell_length_c 3.0\n"},
              with("data_b\n_cell_length_a 7.0\n", "data_b\n_cell_length_a 7.5\n_cell_length_c 3.0\n"),
              o}},
            {"first block replaced",
             {"block",
              3,
              {"data_a\n_cell_length_a 4.0\n"},
              "data_a\n_cell_length_a 4.0\ndata_b\n_cell_length_a 7.0\n",
              o}},
        });
    }
    void editsFromTools()
    {
        QFETCH(EditCase, row);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(fx_.makeFile(QStringLiteral("edit.cif"), row.source.toLatin1()), false));
        window->editor()->setTextCursor(
            QTextCursor(window->editor()->document()->findBlockByNumber(row.cursorLine - 1)));
        const QStringList& a = row.arguments;
        if (row.route == QLatin1String("item"))
            window->dataItemUpdate(a.at(0), a.at(1), a.at(2));
        else if (row.route == QLatin1String("loop"))
            window->loopUpdate(a.at(0));
        else
            window->blockUpdate(a.at(0));

        QCOMPARE(window->editor()->toPlainText(), row.expected);
        QVERIFY(ScriptedWindow::shown.isEmpty());
        if (row.expected == row.source)
            return;
        // The changed text is checked again at once, so the block list follows it.
        QVERIFY(window->editor()->parsed());
        QVERIFY(window->document());
        QStringList blocks;
        for (std::size_t i = 0; i < window->document()->block_count(); ++i)
            blocks << QString::fromStdString(window->document()->block(i).name()).toLower();
        QCOMPARE(blocks, QStringList({"data_a", "data_b"}));
    }
};

QTEST_MAIN(QcbsMainWindowRoutesTest)
#include "QcbsMainWindowRoutesTest.moc"
