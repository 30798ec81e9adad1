#ifndef CIFWARD_QCBSJOURNALLISTBOXITEM_H
#define CIFWARD_QCBSJOURNALLISTBOXITEM_H

#include "Journal.h"

#include <QListWidgetItem>

// A row of the journal list: the journal's name, its CODEN as the tip, and the normalised name
// that the filter compares, made once rather than at every key press.
class QcbsJournalListBoxItem : public QListWidgetItem {
public:
    QcbsJournalListBoxItem(const Journal& journal, QListWidget* list);

    const QString& filterKey() const { return filterKey_; }

private:
    QString filterKey_;
};

#endif
