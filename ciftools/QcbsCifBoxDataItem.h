#ifndef CIFWARD_QCBSCIFBOXDATAITEM_H
#define CIFWARD_QCBSCIFBOXDATAITEM_H

#include "QcbsCifBoxItem.h"

// A data name of the dictionaries as its block has it: missing (greyed), a column of a loop, or
// with a first value that fails its check. Only a loop's first value is checked here: the error
// list has the rest.
class QcbsCifBoxDataItem : public QcbsCifBoxItem {
public:
    QcbsCifBoxDataItem(QTreeWidgetItem* parent, QTreeWidgetItem* after, const HCifDataBlock& block,
                       const QString& name);

    void contextMenu(QMenu& menu, QcbsCifBoxView& view) override;
    void activate(QcbsCifBoxView& view) override;
    bool isMissing() const override { return missing_; }
    virtual bool isLooped() const { return looped_; }
    QString helpName() const override { return name(); }
    // The index of the row's picture, as the icons number them.
    int iconIndex() const { return iconIndex_; }

private:
    bool missing_ = false;
    bool looped_ = false;
    int iconIndex_ = 0;
};

#endif
