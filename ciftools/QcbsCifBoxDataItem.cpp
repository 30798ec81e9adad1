#include "QcbsCifBoxDataItem.h"

#include "CifError.h"
#include "QcbsCifBoxView.h"
#include "QcbsCifIcons.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

QcbsCifBoxDataItem::QcbsCifBoxDataItem(QTreeWidgetItem* parent, QTreeWidgetItem* after,
                                       const HCifDataBlock& block, const QString& name)
    : QcbsCifBoxItem(parent, after, block, name)
{
    iconIndex_ = QcbsCifIcons::DataItem;
    QString tip = QStringLiteral("In the block");
    const HCifDataItem item = block->item(name.toStdString());
    if (!item) {
        iconIndex_ = QcbsCifIcons::MissingItem;
        missing_ = true;
        tip = QStringLiteral("Not in the block");
    } else if (item->has_value()) {
        if (item->is_looped()) {
            iconIndex_ = QcbsCifIcons::LoopedItem;
            looped_ = true;
            tip = QStringLiteral("A column of a loop");
        }
        const std::string first = item->first_value();
        if (const int result = item->check(first)) {
            iconIndex_ = QcbsCifIcons::FailingItem;
            tip = QString::fromStdString(CifError(cif_check_result_code(result), first, -1).message());
        }
    }
    setIcon(0, QcbsCifIcons::boxIcon(iconIndex_));
    setToolTip(0, tip);
    applyLook();
}

void QcbsCifBoxDataItem::contextMenu(QMenu& menu, QcbsCifBoxView& view)
{
    const QString item = name();
    const QString blockName = QString::fromStdString(block()->name());
    const int line = block()->line();
    if (!isMissing())
        QObject::connect(menu.addAction(QStringLiteral("Go to item")), &QAction::triggered, &view,
                         [&view, item, line] { emit view.selectedDataItem(item, line); });
    QObject::connect(menu.addAction(QcbsCifIcons::help(), QStringLiteral("Item help")), &QAction::triggered,
                     &view, [&view, item] { emit view.datItemHelpRequest(item); });
    QObject::connect(menu.addAction(QStringLiteral("Copy item name")), &QAction::triggered, &view,
                     [item] { QApplication::clipboard()->setText(item); });
    if (isMissing())
        QObject::connect(menu.addAction(QStringLiteral("Paste into editor")), &QAction::triggered, &view,
                         [&view, item] { emit view.insertTextRequest(item); });
    if (!isLooped())
        QObject::connect(menu.addAction(QStringLiteral("Set data item value")), &QAction::triggered, &view,
                         [&view, blockName, item] { emit view.dataItemSetRequest(blockName, item); });
}

void QcbsCifBoxDataItem::activate(QcbsCifBoxView& view)
{
    emit view.selectedDataItem(name());
    if (!missing_)
        emit view.selectedDataItem(name(), block()->line());
}
