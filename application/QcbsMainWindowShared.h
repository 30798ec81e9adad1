#ifndef CIFWARD_QCBSMAINWINDOWSHARED_H
#define CIFWARD_QCBSMAINWINDOWSHARED_H

// What the main window's implementation files share: the state that is one for the whole
// process rather than one per window. Private to the main window; nothing else includes it.

#include "ProgramInfo.h"

#include <QList>
#include <QMenu>
#include <QPointer>
#include <QString>

class QcbsMainWindow;

namespace mainwindow {

inline const QString emptyRecent = QStringLiteral("(empty)");

struct RecentEntry {
    int id;
    QString path;
};

// The recent-files menu is one for the whole process, as the preferences are.
struct SharedState {
    QList<RecentEntry> recent;
    int nextRecentId = 1;
    QPointer<QMenu> recentMenu;
    int windowCount = 0;
    int untitledCounter = 1;
    QPointer<QcbsMainWindow> lastActive;
};

inline SharedState& shared()
{
    static SharedState state;
    return state;
}

inline void rebuildRecentMenu()
{
    QMenu* menu = shared().recentMenu;
    if (!menu)
        return;
    menu->clear();
    for (const RecentEntry& entry : shared().recent)
        menu->addAction(entry.path)->setData(entry.id);
}

inline QString programText()
{
    return QString::fromStdString(programName());
}

} // namespace mainwindow

#endif
