#ifndef CIFWARD_QCBSERRORLISTVIEW_H
#define CIFWARD_QCBSERRORLISTVIEW_H

#include <QPoint>
#include <QString>
#include <QTreeWidget>

class QcbsKeyListViewItem;

// The findings of the last check under three fixed branches: errors, warnings and remarks. A
// double click asks the editor to mark the finding's line, and a right click on a message asks
// for the help page of its code.
class QcbsErrorListView : public QTreeWidget {
    Q_OBJECT
public:
    enum Kind { Errors = 0, Warnings = 1, Remarks = 2 };

    // Longer messages are cut, so that one runaway value cannot widen the list without bound.
    static constexpr int maxMessageLength = 256;

    explicit QcbsErrorListView(QWidget* parent = nullptr);

    void addError(const QString& message, int line, int code);
    void addWarning(const QString& message, int line, int code);
    void addRemark(const QString& message, int line, int code);

    QTreeWidgetItem* root(Kind kind) const;
    // Items added under the branch since the last clear.
    int count(Kind kind) const { return counts_[kind]; }

    // The help page of a message code, relative to the documentation directory, or the empty
    // text for a code that has none.
    static QString helpPage(int code);

signals:
    void helpRequest(const QString& filename);
    void requestHighlightLine(int line, int kind, bool clear);

public slots:
    void clear();
    void doubleClickedItem(QTreeWidgetItem* item);
    void showHelp(QTreeWidgetItem* item, const QPoint& pos, int column);

private:
    void addItem(Kind kind, const QString& message, int line, int code);
    void requestHelpAt(const QPoint& viewportPos);

    QcbsKeyListViewItem* roots_[3] = {};
    int counts_[3] = {};
};

#endif
