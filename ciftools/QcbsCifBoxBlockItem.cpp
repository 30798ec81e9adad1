#include "QcbsCifBoxBlockItem.h"

#include "QcbsCifBoxCategoryItem.h"
#include "QcbsCifBoxView.h"
#include "QcbsCifIcons.h"

#include <QMenu>

namespace {

// The dictionaries describe their categories in entries of this category, which is no part of
// what a file holds.
const char* const overviewCategory = "_category_overview_[]";

} // namespace

QcbsCifBoxBlockItem::QcbsCifBoxBlockItem(QTreeWidget* view, const HCifDataBlock& block)
    : QcbsCifBoxItem(view, block, QString::fromStdString(block->name()))
{
    setIcon(0, QcbsCifIcons::boxIcon(QcbsCifIcons::BlockClosed));
    setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    setToolTip(0, QStringLiteral("Block %1, line %2: open it to see what the dictionaries define")
                      .arg(name())
                      .arg(block->line()));
    applyLook();
}

void QcbsCifBoxBlockItem::contextMenu(QMenu& menu, QcbsCifBoxView& view)
{
    const QString blockName = name();
    QObject::connect(menu.addAction(QStringLiteral("Go to block")), &QAction::triggered, &view,
                     [&view, blockName] { emit view.goToBlock(blockName); });
}

void QcbsCifBoxBlockItem::setOpen(bool open)
{
    setIcon(0, QcbsCifIcons::boxIcon(open ? QcbsCifIcons::BlockOpen : QcbsCifIcons::BlockClosed));
    if (!open || childCount() > 0)
        return;
    CifDictionary::Strings categories;
    block()->dictionary()->category_names(categories);
    QTreeWidgetItem* after = nullptr;
    for (const std::string& category : categories)
        if (category != overviewCategory)
            after = new QcbsCifBoxCategoryItem(this, after, block(), QString::fromStdString(category));
    if (childCount() == 0)
        setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}
