#ifndef CIFWARD_QCBSLOOPTABLEMODEL_H
#define CIFWARD_QCBSLOOPTABLEMODEL_H

#include "CifDataBlock.h"

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// One loop as a table, over a private copy of it in a scratch block: a column is a data name, a
// cell the value of that name on that row. The cells are read from the scratch block's items as
// they are painted, so that a loop of hundreds of thousands of values opens without a second
// copy; each cell's check result is kept beside it.
class QcbsLoopTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using Cell = std::pair<int, int>; // row, column

    explicit QcbsLoopTableModel(QObject* parent = nullptr);

    // Copies the loop that holds `name`; false, with the table left as it was, when `name` has no
    // value in `source` or stands in no loop.
    bool load(const std::string& name, const CifDataBlock& source);
    // An empty table on a fresh scratch block.
    void clear(const HCifDictionary& dictionary);

    const HCifDataBlock& block() const { return block_; }
    QString name(int column) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    QString value(int row, int column) const;
    // The check's result for the cell: 0 when the value passes.
    int status(int row, int column) const;
    int failingCount() const { return failing_; }
    // How many values the last row lacks, in a loop whose values do not fill its rows.
    int missingInLastRow() const;

    // Stores the text through the item's check, which marks the cell and never refuses it.
    void setValue(int row, int column, const QString& text);
    // A row of empty values at the end; nothing without a column.
    bool addRow();
    // A column at the end, empty until a value is typed; false for an empty name or one the loop
    // holds already.
    bool addColumn(const std::string& name);
    void removeRows(std::vector<int> rows);
    void removeColumns(std::vector<int> columns);
    // The table read as the stream of values a loop is: the values from `cell` on move one place
    // on, the cell is emptied, and a row is added when the last value would be pushed out.
    void insertCell(Cell cell);
    // The selected cells leave the stream and the values after them close up; rows left wholly
    // empty at the end go.
    void deleteCells(const std::vector<Cell>& cells);
    void moveRow(int from, int to);
    void moveColumn(int from, int to);
    // The next cell after `from` in reading order, from the top again after the end, whose
    // value fails its check; {-1, -1} when none does.
    Cell nextFailing(Cell from) const;

    // The loop as CIF text, from its "loop_" on, as the writer writes it.
    std::string loopText(unsigned lineLimit) const;

signals:
    // The number of rows, columns or failing cells may have changed.
    void summaryChanged();

private:
    struct Column {
        std::string name;
        HCifDataItem item;
        std::vector<std::uint8_t> status;
        bool checked = true; // false when no check can refuse a value of this name
    };
    // Stores without telling the views: the caller reports the whole change at once.
    void store(int row, int column, std::string_view text);
    void checkAll(Column& column);
    bool checks(const Column& column) const;
    void recount();

    HCifDataBlock block_;
    std::vector<Column> columns_;
    int rows_ = 0;
    int failing_ = 0;
};

#endif
