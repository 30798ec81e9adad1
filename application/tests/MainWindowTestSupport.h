#ifndef CIFWARD_MAINWINDOWTESTSUPPORT_H
#define CIFWARD_MAINWINDOWTESTSUPPORT_H

#include "GuiTestSupport.h"
#include "QcbsAppState.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

// Answers every question of the window from a script, records what was shown and what the
// platform opener was asked for, so that no modal box, file dialog or browser can stop a test.
class ScriptedWindow : public QcbsMainWindow {
public:
    struct Shown {
        QString title, text;
    };
    static inline QList<Shown> shown;
    static inline QList<int> answers;
    static inline QList<QUrl> opened;
    static inline bool openerWorks = true;
    static inline QString saveAnswer;
    static inline int saveDialogs = 0;

    using QcbsMainWindow::QcbsMainWindow;

    static void reset()
    {
        shown.clear();
        answers.clear();
        opened.clear();
        openerWorks = true;
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
    bool openUrl(const QUrl& url) override
    {
        opened.append(url);
        return openerWorks;
    }
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
