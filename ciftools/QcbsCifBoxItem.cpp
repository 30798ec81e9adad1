#include "QcbsCifBoxItem.h"

QcbsCifBoxItem::QcbsCifBoxItem(QTreeWidget* view, const HCifDataBlock& block, const QString& text)
    : QTreeWidgetItem(view, QStringList(text), Type), block_(block), text_(text)
{
}

QcbsCifBoxItem::QcbsCifBoxItem(QTreeWidgetItem* parent, QTreeWidgetItem* after, const HCifDataBlock& block,
                               const QString& text)
    : QTreeWidgetItem(parent, after, Type), block_(block), text_(text)
{
    setText(0, text);
}

void QcbsCifBoxItem::activate(QcbsCifBoxView&)
{
    setExpanded(!isExpanded());
}

void QcbsCifBoxItem::applyLook()
{
    if (isBold()) {
        QFont bold = font(0);
        bold.setBold(true);
        setFont(0, bold);
    }
    if (isMissing())
        setForeground(0, QColor(Qt::gray));
}
