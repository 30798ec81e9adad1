#ifndef CIFWARD_QCBSERRORLISTVIEWITEM_H
#define CIFWARD_QCBSERRORLISTVIEWITEM_H

#include <QStringList>
#include <QTreeWidgetItem>

// One finding in the error list: its texts by column, and the message code that leads to its
// help page.
class QcbsErrorListViewItem : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 2;

    QcbsErrorListViewItem(QTreeWidgetItem* parent, const QStringList& texts, int code);

    int code() const { return code_; }

private:
    int code_;
};

#endif
