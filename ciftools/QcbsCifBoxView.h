#ifndef CIFWARD_QCBSCIFBOXVIEW_H
#define CIFWARD_QCBSCIFBOXVIEW_H

#include "Cif.h"

#include <QPoint>
#include <QString>
#include <QTreeWidget>

// The parsed file as a tree of its blocks, the dictionaries' categories and their data names:
// what each block could hold, with what it lacks greyed, so that a user sees what is missing, goes
// to an item, reads its help and gives it a value.
class QcbsCifBoxView : public QTreeWidget {
    Q_OBJECT
public:
    explicit QcbsCifBoxView(QWidget* parent = nullptr);

    // Remade from scratch, every folder closed: the previous tree described an older text.
    void setCif(const HCif& cif);
    const HCif& cif() const { return cif_; }
    // Makes the block's row the current one and brings it into sight.
    void showBlock(const QString& block);

public slots:
    void slotFolderSelected(QTreeWidgetItem* item);
    void slotRightPressed(QTreeWidgetItem* item, const QPoint& globalPosition, int column);

signals:
    void goToBlock(const QString& block);
    void selectedDataItem(const QString& itemname);
    // `start_line` is the block's line: the name is looked for in the text from there on.
    void selectedDataItem(const QString& itemname, int start_line);
    void datItemHelpRequest(const QString& name);
    void dataItemSetRequest(const QString& block, const QString& name);
    void insertTextRequest(const QString& text);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    HCif cif_;
};

#endif
