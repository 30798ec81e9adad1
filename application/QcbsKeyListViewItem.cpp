#include "QcbsKeyListViewItem.h"

QcbsKeyListViewItem::QcbsKeyListViewItem(QTreeWidget* parent, const QString& key, const QStringList& texts)
    : QTreeWidgetItem(parent, texts, Type), key_(key)
{
}

bool QcbsKeyListViewItem::operator<(const QTreeWidgetItem& other) const
{
    if (other.type() != Type)
        return QTreeWidgetItem::operator<(other);
    return key_ < static_cast<const QcbsKeyListViewItem&>(other).key_;
}
