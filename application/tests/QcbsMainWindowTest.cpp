#include "GuiTestSupport.h"
#include "QcbsApplication.h"
#include "QcbsCifText.h"
#include "QcbsErrorListView.h"
#include "QcbsOutputPane.h"
#include "QcbsRichTextEdit.h"

#include <QProcess>
#include <QStatusBar>
#include <QTextBlock>
#include <QTreeWidgetItem>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The bytes as gzip(1) compresses them.
QByteArray gzip(const QByteArray& bytes)
{
    QProcess process;
    process.start(QStringLiteral("gzip"), {QStringLiteral("-c")});
    process.write(bytes);
    process.closeWriteChannel();
    process.waitForFinished();
    return process.readAllStandardOutput();
}

// Findings as "code@line[first]", in order.
std::string findingsOf(const Cif& cif)
{
    std::string out;
    for (const CifError& e : *cif.errors())
        out += std::to_string(e.code) + "@" + std::to_string(e.line) + "[" + e.first + "] ";
    return out;
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
struct CloseCase {
    int windows;
    bool loaded, typed, closes, renewed;
};
struct EditCase {
    QString call;          // the route, the cursor's line and the arguments, separated by '|'
    QString from, to;      // the text changed: what the document held and what it holds after
    bool capitals = false; // the second heading written in capitals
};

} // namespace

Q_DECLARE_METATYPE(LineCase)
Q_DECLARE_METATYPE(CloseCase)
Q_DECLARE_METATYPE(EditCase)

class QcbsMainWindowTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void openCheckJumpEditSaveReopen()
    {
        const QString corpus = sharedPath(QStringLiteral("corpus/cod/1000000-bad-formula.cif"));
        if (!QFileInfo::exists(corpus))
            QSKIP("the shared corpus is absent");
        const QString path = fx_.makeFile(QStringLiteral("bad-formula.cif"), readBytes(corpus));
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(path, false));
        QCOMPARE(window->fileName(), path);
        QVERIFY(window->windowTitle().endsWith(QStringLiteral(" - bad-formula.cif")));

        window->reparse();
        QcbsErrorListView* list = window->errorList();
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
        QVERIFY(readBytes(path).contains(markedLine.toUtf8() + " # checked\r\n"));
        QVERIFY(window->fileClose());
        QVERIFY(window->fileOpen(path, false));
        QCOMPARE(window->editor()->document()->findBlockByNumber(marked).text(), markedLine + " # checked");
    }

    void openAndSave_data()
    {
        QTest::addColumn<QByteArray>("original");
        QTest::addColumn<QString>("typed"); // null: saved as read
        QTest::addColumn<QByteArray>("saved");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, const QByteArray& original, const QString& typed,
                            const QByteArray& saved, const char* message) {
            QTest::newRow(name) << original << typed << saved << QString::fromLatin1(message);
        };
        row("line feeds become CR LF", "data_a\n_cell_length_a 5.0\n", {}, "data_a\r\n_cell_length_a 5.0\r\n",
            "Read 2 lines.");
        row("last line has no line end", "data_a\n", "data_a\n_x 1", "data_a\r\n_x 1", "Read 1 line.");
        row("Latin-1 bytes kept", "data_a\n_name 'M\xfcller'\n", {}, "data_a\r\n_name 'M\xfcller'\r\n",
            "Read 2 lines.");
    }
    void openAndSave()
    {
        QFETCH(QByteArray, original);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        const QString path = fx_.makeFile(QStringLiteral("format.cif"), original);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(path, false));
        QVERIFY2(window->outputPane()->toPlainText().contains(message),
                 qPrintable(window->outputPane()->toPlainText()));
        if (!typed.isNull())
            window->editor()->setPlainText(typed);
        QVERIFY(window->fileSave());
        QTEST(readBytes(path), "saved");
    }

    void compressedAndNonTextFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("plain"); // what a compressed file holds; null for none
        QTest::addColumn<int>("nulLine");      // where a NUL byte was put; 0 for none
        QTest::addColumn<QString>("refusal");  // empty: opened
        const QByteArray corpus =
            readBytes(sharedPath(QStringLiteral("corpus/iucr-ciftest/syntax/ciftest10.cif")));
        if (corpus.startsWith("<unreadable>"))
            QSKIP("the shared corpus is absent");
        QByteArray nul = corpus;
        const qsizetype value = nul.indexOf(' ', nul.indexOf("\n_")) + 1;
        nul.insert(value, '\0');
        const int nulLine = static_cast<int>(corpus.left(value).count('\n')) + 1;
        QTest::newRow("gzip-compressed") << "ciftest10.cif.gz" << gzip(corpus) << corpus << 0 << QString();
        QTest::newRow("NUL in a value") << "nul.cif" << nul << QByteArray() << nulLine << QString();
        QTest::newRow("truncated gzip")
            << "cut.cif.gz" << gzip(corpus).left(60) << QByteArray() << 0 << "truncated gzip data";
        QTest::newRow("PNG image") << "picture.cif" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)
                                   << QByteArray() << 0 << "a PNG image, not a CIF";
    }
    void compressedAndNonTextFiles()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, plain);
        QFETCH(int, nulLine);
        QFETCH(QString, refusal);
        ScriptedWindow* window = fx_.newWindow();
        const bool opened = window->fileOpen(fx_.makeFile(name, bytes), true);
        QCOMPARE(opened, refusal.isEmpty());
        if (!opened) {
            QVERIFY(ScriptedWindow::anyShownContains(QStringLiteral("Could not open file")));
            QVERIFY(ScriptedWindow::anyShownContains(refusal));
            return;
        }
        const std::string found = findingsOf(*window->document());
        if (!plain.isNull()) {
            // The contents, and what a check finds in them, are those of the plain file.
            ScriptedWindow* reference = fx_.newWindow();
            QVERIFY(reference->fileOpen(fx_.makeFile(QStringLiteral("plain.cif"), plain), false));
            QCOMPARE(window->editor()->toPlainText(), reference->editor()->toPlainText());
            QCOMPARE(found, findingsOf(*reference->document()));
        }
        if (nulLine > 0)
            QVERIFY2(found.find("348@" + std::to_string(nulLine) + "[\\00]") != std::string::npos,
                     found.c_str());
    }

    void savingOverACompressedFileAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QByteArray>("compressedAfter"); // the .gz file's contents after the save
        QTest::addColumn<QByteArray>("plainAfter");      // the plain file Save As wrote; null: none
        const QByteArray original = "data_a\n_x 1\n";
        const QByteArray edited = "data_a\r\n_x 2";
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << original << QByteArray();
        QTest::newRow("write back compressed") << int(QMessageBox::Yes) << edited << QByteArray();
        QTest::newRow("save uncompressed elsewhere") << int(QMessageBox::No) << original << edited;
    }
    void savingOverACompressedFileAsks()
    {
        QFETCH(int, answer);
        QFETCH(QByteArray, compressedAfter);
        QFETCH(QByteArray, plainAfter);
        const QString path = fx_.makeFile(QStringLiteral("doc.cif.gz"), gzip("data_a\n_x 1\n"));
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(path, false));
        window->editor()->setPlainText(QStringLiteral("data_a\n_x 2"));
        ScriptedWindow::answers = {answer};
        ScriptedWindow::saveAnswer = fx_.path(QStringLiteral("doc.cif"));
        QCOMPARE(window->fileSave(), answer != QMessageBox::Cancel);
        QVERIFY(ScriptedWindow::anyShownContains(QStringLiteral("\"doc.cif.gz\" is gzip-compressed")));
        QByteArray contents;
        QString error;
        bool compressed = false;
        QVERIFY(readCifFile(path, contents, error, &compressed));
        QVERIFY(compressed);
        QCOMPARE(contents, compressedAfter);
        QCOMPARE(readBytes(fx_.path(QStringLiteral("doc.cif"))),
                 plainAfter.isNull() ? QByteArray("<unreadable>") : plainAfter);
        QCOMPARE(ScriptedWindow::saveDialogs, plainAfter.isNull() ? 0 : 1);
    }

    void untitledSaveGoesThroughSaveAs()
    {
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileName().startsWith(QcbsMainWindow::untitledPrefix()));
        window->editor()->setPlainText(QStringLiteral("data_new\n_x 1"));
        const QString target = fx_.path(QStringLiteral("chosen.cif"));
        ScriptedWindow::saveAnswer = target;
        QVERIFY(window->fileSave());
        QCOMPARE(window->fileName(), target);
        QCOMPARE(readBytes(target), QByteArray("data_new\r\n_x 1"));
        QVERIFY(QcbsMainWindow::recentFiles().contains(target));
        QCOMPARE(window->windowTitle(), QStringLiteral("Cifward - chosen.cif"));
        // Saving again goes straight to the file.
        window->editor()->appendPlainText(QStringLiteral("_y 2"));
        QVERIFY(window->fileSave());
        QCOMPARE(ScriptedWindow::saveDialogs, 1);
    }

    void backupHoldsOldContents()
    {
        const QString path = fx_.makeFile(QStringLiteral("kept.cif"), "data_old\n_x 1\n");
        ScriptedWindow* window = fx_.newWindow();
        QcbsMainWindow::preferences().saveBackupFile = true;
        window->initialiseEditorSettings();
        QVERIFY(window->fileOpen(path, false));
        window->editor()->setPlainText(QStringLiteral("data_new\n_x 2"));
        QVERIFY(window->fileSave());
        QcbsMainWindow::preferences().saveBackupFile = false;
        window->initialiseEditorSettings();
        QCOMPARE(readBytes(fx_.path(QStringLiteral("kept_backup.cif"))), QByteArray("data_old\n_x 1\n"));
        QCOMPARE(readBytes(path), QByteArray("data_new\r\n_x 2"));
    }

    void failedSaveLeavesFileIntact_data()
    {
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QString>("message");
        QTest::newRow("read-only directory") << "readonly" << QString("Could not write to this file");
        QTest::newRow("full disk") << "full" << QString("Could not write to this file");
        QTest::newRow("changed on disk") << "changed" << QString("has changed on disk since it was opened");
    }
    // The save runs in a child process, where a file size limit or a user without write
    // permission can be imposed without touching the test itself.
    void failedSaveLeavesFileIntact()
    {
        QFETCH(QString, failure);
        QFETCH(QString, message);
        const QString corpus = sharedPath(QStringLiteral("corpus/cod/00993.cif"));
        if (!QFileInfo::exists(corpus))
            QSKIP("the shared corpus is absent");
        QTemporaryDir place;
        const QByteArray placeName = QFile::encodeName(place.path());
        QCOMPARE(::chmod(placeName.constData(), 0755), 0);
        const QString path = place.filePath(QStringLiteral("victim.cif"));
        QByteArray onDisk = readBytes(corpus);
        writeBytes(path, onDisk);

        ScriptedWindow* window = fx_.newWindow();
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
            _exit((saved ? 1 : 0) | (window->editor()->document()->isModified() ? 2 : 0) |
                  (ScriptedWindow::anyShownContains(message) ? 4 : 0));
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        QCOMPARE(::chmod(placeName.constData(), 0755), 0);
        QVERIFY(WIFEXITED(status));
        const int code = WEXITSTATUS(status);
        QVERIFY2(code != 100, "could not drop privileges");
        QCOMPARE(code, 2 | 4); // not saved, still modified, reported
        QCOMPARE(readBytes(path), onDisk);
        QCOMPARE(QDir(place.path()).entryList(QDir::Files), QStringList{QStringLiteral("victim.cif")});
    }

    void commandLineFiles_data()
    {
        const QString missing = QStringLiteral("Error: Could not open file \"{dir}/missing.cif\"");
        addRows<LineCase>({
            {"reuse window: only the first of three",
             {true, {"a.cif", "b.cif", "c.cif"}, 1, true, {"a.cif"}, "Ready"}},
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

    void closeRequested_data()
    {
        addRows<CloseCase>({
            {"one window, file loaded", {1, true, false, false, true}},
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

    void editsFromTools_data()
    {
        addRows<EditCase>({
            {"item value in place", {"item|1|data_a|_cell_length_a|5.5", "a 5.0", "a 5.5"}},
            // Block names are case-insensitive.
            {"block header in capitals", {"item|1|data_b|_cell_length_a|7.25(3)", "7.0", "7.25(3)", true}},
            {"loop with a row added",
             {"loop|8|loop_\n_atom_site_label\n_atom_site_type_symbol\nC1 C\nO1 O\nN1 N\n", "O1 O\n",
              "O1 O\nN1 N\n"}},
            {"last block replaced",
             {"block|13|data_b\n_cell_length_a 7.5\n_cell_length_c 3.0\n", "7.0\n",
              "7.5\n_cell_length_c 3.0\n"}},
        });
    }
    void editsFromTools()
    {
        QFETCH(EditCase, row);
        const QString source = row.capitals ? QString(smallCif).replace("data_b", "DATA_B") : smallCif;
        const int at = source.lastIndexOf(row.from);
        const QString expected =
            row.from.isEmpty() ? source : QString(source).replace(at, row.from.size(), row.to);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(fx_.makeFile(QStringLiteral("edit.cif"), source.toLatin1()), false));
        const QStringList a = row.call.split('|');
        window->editor()->setTextCursor(
            QTextCursor(window->editor()->document()->findBlockByNumber(a.at(1).toInt() - 1)));
        if (a.at(0) == QLatin1String("item"))
            window->dataItemUpdate(a.at(2), a.at(3), a.at(4));
        else if (a.at(0) == QLatin1String("loop"))
            window->loopUpdate(a.at(2));
        else
            window->blockUpdate(a.at(2));

        QCOMPARE(window->editor()->toPlainText(), expected);
        QVERIFY(ScriptedWindow::shown.isEmpty());
        if (row.from.isEmpty())
            return;
        // The changed text is checked again at once, so the block list follows it.
        QVERIFY(window->editor()->parsed() && window->document());
        QStringList blocks;
        for (std::size_t i = 0; i < window->document()->block_count(); ++i)
            blocks << QString::fromStdString(window->document()->block(i).name()).toLower();
        QCOMPARE(blocks, QStringList({"data_a", "data_b"}));
    }
};

QTEST_MAIN(QcbsMainWindowTest)
#include "QcbsMainWindowTest.moc"
