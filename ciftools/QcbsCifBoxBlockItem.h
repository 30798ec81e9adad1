#ifndef CIFWARD_QCBSCIFBOXBLOCKITEM_H
#define CIFWARD_QCBSCIFBOXBLOCKITEM_H

#include "QcbsCifBoxItem.h"

// A data block of the file, in bold; opened, it lists every category of the active dictionaries
// in the dictionaries' order.
class QcbsCifBoxBlockItem : public QcbsCifBoxItem {
public:
    QcbsCifBoxBlockItem(QTreeWidget* view, const HCifDataBlock& block);

    void contextMenu(QMenu& menu, QcbsCifBoxView& view) override;
    bool isBold() const override { return true; }
    void setOpen(bool open) override;
};

#endif
