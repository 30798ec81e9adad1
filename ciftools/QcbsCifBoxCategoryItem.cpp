#include "QcbsCifBoxCategoryItem.h"

#include "QcbsCifBoxDataItem.h"
#include "QcbsCifBoxView.h"
#include "QcbsCifIcons.h"

#include <QMenu>

QcbsCifBoxCategoryItem::QcbsCifBoxCategoryItem(QTreeWidgetItem* parent, QTreeWidgetItem* after,
                                               const HCifDataBlock& block, const QString& category)
    : QcbsCifBoxItem(parent, after, block, category)
{
    setIcon(0, QcbsCifIcons::boxIcon(QcbsCifIcons::CategoryClosed));
    setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    setToolTip(0, QStringLiteral("A category of the dictionaries: open it to see its data names"));
}

void QcbsCifBoxCategoryItem::contextMenu(QMenu& menu, QcbsCifBoxView& view)
{
    const QString category = name();
    QObject::connect(menu.addAction(QcbsCifIcons::help(), QStringLiteral("Item help")), &QAction::triggered,
                     &view, [&view, category] { emit view.datItemHelpRequest(category); });
}

void QcbsCifBoxCategoryItem::setOpen(bool open)
{
    setIcon(0, QcbsCifIcons::boxIcon(open ? QcbsCifIcons::CategoryOpen : QcbsCifIcons::CategoryClosed));
    if (!open || childCount() > 0)
        return;
    CifDictionary::Strings names;
    block()->dictionary()->category_items(name().toStdString(), names);
    QTreeWidgetItem* after = nullptr;
    for (const std::string& each : names)
        after = new QcbsCifBoxDataItem(this, after, block(), QString::fromStdString(each));
    if (childCount() == 0)
        setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}
