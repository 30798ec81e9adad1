#include "QcbsErrorListViewItem.h"

QcbsErrorListViewItem::QcbsErrorListViewItem(QTreeWidgetItem* parent, const QStringList& texts, int code)
    : QTreeWidgetItem(parent, texts, Type), code_(code)
{
}
