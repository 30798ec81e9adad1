#ifndef CIFWARD_QCBSKEYLISTVIEWITEM_H
#define CIFWARD_QCBSKEYLISTVIEWITEM_H

#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

// A tree item that sorts by a key of its own instead of its texts, so that items whose texts
// would sort otherwise keep a fixed order in a sorted tree.
class QcbsKeyListViewItem : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 1;

    QcbsKeyListViewItem(QTreeWidget* parent, const QString& key, const QStringList& texts);

    const QString& key() const { return key_; }

    bool operator<(const QTreeWidgetItem& other) const override;

private:
    QString key_;
};

#endif
