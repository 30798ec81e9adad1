#ifndef CIFWARD_QCBSCIFBOXITEM_H
#define CIFWARD_QCBSCIFBOXITEM_H

#include "CifDataBlock.h"

#include <QString>
#include <QTreeWidgetItem>

class QMenu;
class QcbsCifBoxView;

// One row of the box view: a block, a category or a data name, always seen from one block of the
// file. Folders make their rows when they first open, so a file of many blocks costs nothing
// until the user looks into one.
class QcbsCifBoxItem : public QTreeWidgetItem {
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 10;

    QcbsCifBoxItem(QTreeWidget* view, const HCifDataBlock& block, const QString& text);
    QcbsCifBoxItem(QTreeWidgetItem* parent, QTreeWidgetItem* after, const HCifDataBlock& block,
                   const QString& text);

    const HCifDataBlock& block() const { return block_; }
    const QString& name() const { return text_; }

    // Adds the row's entries to its context menu; they act through the view's signals.
    virtual void contextMenu(QMenu& menu, QcbsCifBoxView& view) = 0;
    // A double click or Return on the row.
    virtual void activate(QcbsCifBoxView& view);
    virtual bool isMissing() const { return false; }
    virtual bool isBold() const { return false; }
    // The folder opened or closed: the icon follows, and the first opening makes the children.
    // A data name is no folder and never opens.
    virtual void setOpen(bool) {}
    // The data name that item help explains for this row, or the empty text.
    virtual QString helpName() const { return QString(); }

protected:
    // Bold and grey as the row says; the selection keeps the list's own colours.
    void applyLook();

private:
    HCifDataBlock block_;
    QString text_;
};

#endif
