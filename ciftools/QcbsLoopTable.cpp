#include "QcbsLoopTable.h"

#include "QcbsDataItemInfo.h"
#include "QcbsLoopCellDelegate.h"
#include "QcbsLoopTableModel.h"

#include <QHeaderView>
#include <QMenu>

QcbsLoopTable::QcbsLoopTable(const QString& helpDirectory, QWidget* parent)
    : QTableView(parent), model_(new QcbsLoopTableModel(this)), helpDirectory_(helpDirectory)
{
    setObjectName(QStringLiteral("loopTable_"));
    setModel(model_);
    setItemDelegate(new QcbsLoopCellDelegate(this));
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setWordWrap(false);
    setToolTip(QStringLiteral("Double click or type to change a value; drag a header to move its row or "
                              "column; right button on a column's header for its help"));

    // Every column as wide as twelve digits in the table's font, every row as high: sizes that
    // need no measuring of the values, so a loop of any length opens at once.
    QHeaderView* columns = horizontalHeader();
    columns->setDefaultSectionSize(fontMetrics().horizontalAdvance(QStringLiteral("000000000000")) + 12);
    columns->setSectionsMovable(true);
    columns->setContextMenuPolicy(Qt::CustomContextMenu);
    QHeaderView* rows = verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(std::max(25, fontMetrics().height() + 8));
    rows->setSectionsMovable(true);

    // A column is as wide as its name too, measured once per column, never per value.
    const auto fitNames = [this](int first, int last) {
        const int sample = horizontalHeader()->defaultSectionSize();
        for (int c = first; c <= last; ++c)
            horizontalHeader()->resizeSection(
                c,
                std::max(sample, horizontalHeader()->fontMetrics().horizontalAdvance(model_->name(c)) + 16));
    };
    connect(model_, &QAbstractItemModel::modelReset, this,
            [this, fitNames] { fitNames(0, model_->columnCount() - 1); });
    connect(model_, &QAbstractItemModel::columnsInserted, this,
            [fitNames](const QModelIndex&, int first, int last) { fitNames(first, last); });
    connect(columns, &QHeaderView::sectionMoved, this,
            [this](int, int from, int to) { headerMoved(Qt::Horizontal, from, to); });
    connect(rows, &QHeaderView::sectionMoved, this,
            [this](int, int from, int to) { headerMoved(Qt::Vertical, from, to); });
    connect(columns, &QHeaderView::customContextMenuRequested, this, [this](const QPoint& where) {
        const int column = horizontalHeader()->logicalIndexAt(where);
        if (column < 0)
            return;
        QMenu menu(this);
        connect(menu.addAction(QStringLiteral("Item help for ") + model_->name(column)), &QAction::triggered,
                this, [this, column] { showDataItemHelp(column); });
        menu.exec(horizontalHeader()->mapToGlobal(where));
    });
}

const HCifDataBlock& QcbsLoopTable::block() const
{
    return model_->block();
}

bool QcbsLoopTable::setLoop(const QString& name, const HCifDataBlock& block)
{
    return !block || !model_->load(name.toStdString(), *block);
}

void QcbsLoopTable::newLoop(const HCifDictionary& dictionary)
{
    model_->clear(dictionary);
}

void QcbsLoopTable::loopText(QString& out, unsigned lineLimit) const
{
    out = QString::fromStdString(model_->loopText(lineLimit));
}

std::vector<std::pair<int, int>> QcbsLoopTable::selectedCells() const
{
    std::vector<std::pair<int, int>> cells;
    for (const QModelIndex& index : selectionModel()->selectedIndexes())
        cells.emplace_back(index.row(), index.column());
    return cells;
}

void QcbsLoopTable::showDataItemHelp(int column)
{
    const QString name = model_->name(column);
    if (name.isEmpty())
        return;
    auto* help = new QcbsDataItemInfo(name, model_->block()->dictionary(), helpDirectory_, this);
    help->show();
}

void QcbsLoopTable::headerMoved(Qt::Orientation orientation, int from, int to)
{
    // The header only drew the move; the model makes it, and the header goes back to showing
    // the model's order as it is.
    QHeaderView* header = orientation == Qt::Horizontal ? horizontalHeader() : verticalHeader();
    {
        const QSignalBlocker blocker(header);
        header->moveSection(to, from);
    }
    if (orientation == Qt::Horizontal)
        model_->moveColumn(from, to);
    else
        model_->moveRow(from, to);
    const QModelIndex moved = orientation == Qt::Horizontal ? model_->index(currentIndex().row(), to)
                                                            : model_->index(to, currentIndex().column());
    setCurrentIndex(moved);
}
