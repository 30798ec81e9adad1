#include "QcbsCifBoxView.h"

#include "QcbsCifBoxBlockItem.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>

namespace {

QcbsCifBoxItem* boxItem(QTreeWidgetItem* item)
{
    return item && item->type() == QcbsCifBoxItem::Type ? static_cast<QcbsCifBoxItem*>(item) : nullptr;
}

} // namespace

QcbsCifBoxView::QcbsCifBoxView(QWidget* parent) : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("boxview"));
    setWindowTitle(QStringLiteral("Cif Box View"));
    setColumnCount(1);
    setHeaderLabels({QStringLiteral("Blocks and data items")});
    header()->setStretchLastSection(true);
    setRootIsDecorated(true);
    setUniformRowHeights(true);
    // Double click and Return both go to the row's own action; for a folder that is opening it.
    setExpandsOnDoubleClick(false);
    setToolTip(QStringLiteral("Blocks, categories and data names: greyed names are missing from the block. "
                              "F1 shows the help of the selected name; the menu key or right button "
                              "offers the rest."));
    connect(this, &QTreeWidget::itemActivated, this, &QcbsCifBoxView::slotFolderSelected);
    connect(this, &QTreeWidget::itemExpanded, this, [](QTreeWidgetItem* item) {
        if (QcbsCifBoxItem* box = boxItem(item))
            box->setOpen(true);
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [](QTreeWidgetItem* item) {
        if (QcbsCifBoxItem* box = boxItem(item))
            box->setOpen(false);
    });
    setCif(HCif());
}

void QcbsCifBoxView::setCif(const HCif& cif)
{
    cif_ = cif;
    clear();
    if (!cif || cif->block_count() == 0) {
        auto* none = new QTreeWidgetItem(this, QStringList(QStringLiteral("(no items to show)")));
        none->setFlags(Qt::ItemIsEnabled);
        return;
    }
    for (std::size_t i = 0; i < cif->block_count(); ++i)
        new QcbsCifBoxBlockItem(this, cif->block_handle(i));
    setCurrentItem(topLevelItem(0));
}

void QcbsCifBoxView::showBlock(const QString& block)
{
    for (int i = 0; i < topLevelItemCount(); ++i)
        if (QcbsCifBoxItem* box = boxItem(topLevelItem(i)); box && box->name() == block) {
            setCurrentItem(box);
            scrollToItem(box, QAbstractItemView::PositionAtTop);
            return;
        }
}

void QcbsCifBoxView::slotFolderSelected(QTreeWidgetItem* item)
{
    if (QcbsCifBoxItem* box = boxItem(item))
        box->activate(*this);
}

void QcbsCifBoxView::slotRightPressed(QTreeWidgetItem* item, const QPoint& globalPosition, int)
{
    QcbsCifBoxItem* box = boxItem(item);
    if (!box)
        return;
    QMenu menu(this);
    box->contextMenu(menu, *this);
    menu.exec(globalPosition);
}

void QcbsCifBoxView::contextMenuEvent(QContextMenuEvent* event)
{
    // From the keyboard the menu belongs to the current row and opens beside it.
    QTreeWidgetItem* item = nullptr;
    QPoint where = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        item = currentItem();
        if (item)
            where = viewport()->mapToGlobal(visualItemRect(item).center());
    } else {
        item = itemAt(event->pos()); // the event comes through the viewport, in its coordinates
    }
    slotRightPressed(item, where, 0);
}

void QcbsCifBoxView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F1) {
        if (QcbsCifBoxItem* box = boxItem(currentItem()); box && !box->helpName().isEmpty()) {
            emit datItemHelpRequest(box->helpName());
            return;
        }
    }
    QTreeWidget::keyPressEvent(event);
}
