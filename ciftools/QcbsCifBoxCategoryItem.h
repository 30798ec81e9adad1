#ifndef CIFWARD_QCBSCIFBOXCATEGORYITEM_H
#define CIFWARD_QCBSCIFBOXCATEGORYITEM_H

#include "QcbsCifBoxItem.h"

// A category of the dictionaries, shown in its "_name_[]" form; opened, it lists the category's
// data names as seen from its block.
class QcbsCifBoxCategoryItem : public QcbsCifBoxItem {
public:
    QcbsCifBoxCategoryItem(QTreeWidgetItem* parent, QTreeWidgetItem* after, const HCifDataBlock& block,
                           const QString& category);

    void contextMenu(QMenu& menu, QcbsCifBoxView& view) override;
    void setOpen(bool open) override;
    // The dictionaries define the category itself under its "_name_[]" form.
    QString helpName() const override { return name(); }
};

#endif
