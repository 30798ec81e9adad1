#ifndef CIFWARD_QCBSLOOPTABLE_H
#define CIFWARD_QCBSLOOPTABLE_H

#include "CifDataBlock.h"

#include <QString>
#include <QTableView>

class QcbsLoopTableModel;

// A loop of the file as a spreadsheet: the columns are its data names, a cell is a value,
// checked against the dictionary as it is typed. Rows and columns move by dragging their
// headers; a column's header has the help of its name.
class QcbsLoopTable : public QTableView {
    Q_OBJECT
public:
    // `helpDirectory` is where the item help finds the installation's extra texts.
    explicit QcbsLoopTable(const QString& helpDirectory, QWidget* parent = nullptr);

    // Shows the loop that holds `name` in `block`. True on failure, when the block is null or
    // `name` has no value or stands in no loop; the table is then left as it was.
    bool setLoop(const QString& name, const HCifDataBlock& block);
    // An empty table for a new loop, with the dictionary that checks its values.
    void newLoop(const HCifDictionary& dictionary);
    // The loop as CIF text, from its "loop_" on.
    void loopText(QString& out, unsigned lineLimit) const;

    QcbsLoopTableModel* loopModel() const { return model_; }
    const HCifDataBlock& block() const;
    // The cells the user selected, in no particular order.
    std::vector<std::pair<int, int>> selectedCells() const;

public slots:
    void showDataItemHelp(int column);

private:
    void headerMoved(Qt::Orientation orientation, int from, int to);

    QcbsLoopTableModel* model_;
    QString helpDirectory_;
};

#endif
