#ifndef CIFWARD_GUITESTSUPPORT_H
#define CIFWARD_GUITESTSUPPORT_H

// Helpers shared by the widget tests: the shared data, table rows, and a main window whose
// questions are answered from a script.

#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <QtTest>
#include <initializer_list>
#include <utility>

// The shared corpus and dictionaries beside the repository; tests that need them skip without.
inline QString sharedPath(const QString& relative)
{
    return QStringLiteral(CIFWARD_SHARED_DIR "/") + relative;
}

// A data table whose rows are whole structs (declared with Q_DECLARE_METATYPE), so that a row of
// the table is one line; the test reads it back with QFETCH(Row, row).
template <class Row> void addRows(std::initializer_list<std::pair<const char*, Row>> rows)
{
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

// Accepts every modal box that opens while it lives, which would otherwise wait in the test for a
// click that never comes, and keeps "title|text" of each, with "|window hidden" when `behind` was
// out of sight while it showed.
class ModalCatcher {
public:
    explicit ModalCatcher(QWidget* behind = nullptr)
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, behind] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                seen << box->windowTitle() + '|' + box->text() +
                            (behind && !behind->isVisible() ? QStringLiteral("|window hidden") : QString());
                box->accept();
            }
        });
        timer_.start(10);
    }
    QStringList seen;

private:
    QTimer timer_;
};

// Answers every question of the window from a script and records what was shown, so that no modal
// box, file dialog or browser can stop a test.
class ScriptedWindow : public QcbsMainWindow {
public:
    struct Shown {
        QString title, text;
    };
    static inline QList<Shown> shown;
    static inline QList<int> answers;
    static inline QString saveAnswer;
    static inline int saveDialogs = 0;

    using QcbsMainWindow::QcbsMainWindow;

    static void reset()
    {
        shown.clear();
        answers.clear();
        saveAnswer.clear();
        saveDialogs = 0;
    }
    static bool anyShownContains(const QString& text)
    {
        for (const Shown& s : shown)
            if (s.text.contains(text))
                return true;
        return false;
    }

protected:
    int ask(QMessageBox::Icon, const QString& title, const QString& text, QMessageBox::StandardButtons,
            QMessageBox::StandardButton defaultButton, QMessageBox::StandardButton, const QString&) override
    {
        shown.append({title, text});
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
    bool openUrl(const QUrl&) override { return false; } // no test starts a browser
    QcbsMainWindow* createWindow() override { return new ScriptedWindow(appState(), false); }
};

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

inline void writeBytes(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    QCOMPARE(file.write(bytes), bytes.size());
}

// The visible main windows, once the ones closed have been deleted.
inline QList<QcbsMainWindow*> openWindows()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QList<QcbsMainWindow*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget); window && window->isVisible())
            windows << window;
    return windows;
}

// Settings in a temporary store, a program state, a directory for files; every test starts with
// no window, no script and the default preferences.
class WindowFixture {
public:
    void reset()
    {
        QList<QPointer<QcbsMainWindow>> open;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<QcbsMainWindow*>(widget))
                open << window;
        for (const QPointer<QcbsMainWindow>& window : open)
            delete window.data();
        settings_.clear();
        QcbsMainWindow::preferences() = QcbsPreferences();
        ScriptedWindow::reset();
    }
    ScriptedWindow* newWindow(const HQcbsAppState& state = {})
    {
        auto* window = new ScriptedWindow(state ? state : state_);
        window->show();
        return window;
    }
    QString makeFile(const QString& name, const QByteArray& bytes = "data_x\n_cell_length_a 1.0\n")
    {
        const QString path = dir_.filePath(name);
        writeBytes(path, bytes);
        return path;
    }
    QString path(const QString& name = {}) const
    {
        return name.isEmpty() ? dir_.path() : dir_.filePath(name);
    }

private:
    IsolatedSettings settings_;
    HQcbsAppState state_{new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath()))};
    QTemporaryDir dir_;
};

#endif
