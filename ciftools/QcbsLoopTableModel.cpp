#include "QcbsLoopTableModel.h"

#include "CifError.h"
#include "CifNameCompare.h"
#include "QcbsCifIcons.h"

#include <QColor>
#include <QIcon>
#include <algorithm>
#include <set>
#include <sstream>

namespace {

QString fromView(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

QcbsLoopTableModel::QcbsLoopTableModel(QObject* parent) : QAbstractTableModel(parent)
{
}

bool QcbsLoopTableModel::checks(const Column& column) const
{
    switch (column.item->check_kind()) {
    case CifValueCheckKind::None:
        return false;
    case CifValueCheckKind::Standard:
        return block_->dictionary()->find_entry(column.name) != nullptr;
    default:
        return true;
    }
}

void QcbsLoopTableModel::checkAll(Column& column)
{
    column.status.assign(std::size_t(rows_), 0);
    column.checked = checks(column);
    if (!column.checked)
        return;
    for (int row = 0; row < rows_; ++row)
        column.status[std::size_t(row)] =
            std::uint8_t(column.item->check(std::string(column.item->value_view(std::size_t(row)))));
}

void QcbsLoopTableModel::recount()
{
    failing_ = 0;
    for (const Column& column : columns_)
        failing_ +=
            int(std::count_if(column.status.begin(), column.status.end(), [](std::uint8_t s) { return s; }));
}

bool QcbsLoopTableModel::load(const std::string& name, const CifDataBlock& source)
{
    const HCifDataItem found = source.item(name);
    if (!found || !found->has_value() || !found->is_looped())
        return false;
    std::vector<std::string> names;
    source.loop_names(name, names);
    if (names.empty())
        names.push_back(found->name());

    beginResetModel();
    block_ = HCifDataBlock(new CifDataBlock("data_", -1, source.dictionary()));
    block_->copy_loop(names, source, false);
    const HCifLoop from = source.loop_of(name);
    const HCifLoop to = block_->loop_of(name);
    if (from && to) {
        if (!from->notes().empty())
            to->set_note(0, from->notes().front());
        // The comments before "loop_" stay in the editor, outside the lines the table replaces.
        to->set_comment(1, std::string());
    }
    columns_.clear();
    rows_ = 0;
    for (const std::string& each : names) {
        const HCifDataItem item = block_->item(each);
        if (!item)
            continue;
        // A closing comment of the file stays at the file's end, not inside the loop.
        item->set_comment(3, std::string());
        columns_.push_back({item->name(), item, {}, true});
        rows_ = std::max(rows_, int(item->value_count()));
    }
    for (Column& column : columns_)
        checkAll(column);
    recount();
    endResetModel();
    emit summaryChanged();
    return true;
}

void QcbsLoopTableModel::clear(const HCifDictionary& dictionary)
{
    beginResetModel();
    block_ = HCifDataBlock(new CifDataBlock("data_", -1, dictionary));
    columns_.clear();
    rows_ = 0;
    failing_ = 0;
    endResetModel();
    emit summaryChanged();
}

QString QcbsLoopTableModel::name(int column) const
{
    return column >= 0 && column < int(columns_.size())
               ? QString::fromStdString(columns_[std::size_t(column)].name)
               : QString();
}

int QcbsLoopTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int QcbsLoopTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(columns_.size());
}

QString QcbsLoopTableModel::value(int row, int column) const
{
    const Column& c = columns_[std::size_t(column)];
    return fromView(c.item->value_view(std::size_t(row)));
}

int QcbsLoopTableModel::status(int row, int column) const
{
    return columns_[std::size_t(column)].status[std::size_t(row)];
}

QVariant QcbsLoopTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const int row = index.row();
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole: {
        // A text field shows on one line; the cell's editor has its lines.
        QString text = value(row, column);
        text.replace(QLatin1Char('\n'), QChar(0x21B5));
        return text;
    }
    case Qt::EditRole:
        return value(row, column);
    case Qt::BackgroundRole: {
        // Unknown and inapplicable values stand out.
        const QString text = value(row, column).trimmed();
        if (text == QLatin1String("."))
            return QColor(QStringLiteral("lightyellow"));
        if (text == QLatin1String("?"))
            return QColor(QStringLiteral("lightblue"));
        return {};
    }
    case Qt::DecorationRole:
        return status(row, column) ? QcbsCifIcons::warning() : QVariant();
    case Qt::ToolTipRole:
        if (const int result = status(row, column))
            return QString::fromStdString(
                CifError(cif_check_result_code(result), value(row, column).toStdString(), -1).message());
        return {};
    default:
        return {};
    }
}

bool QcbsLoopTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    const QString text = value.toString();
    if (text != this->value(index.row(), index.column()))
        setValue(index.row(), index.column(), text);
    return true;
}

Qt::ItemFlags QcbsLoopTableModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable : Qt::NoItemFlags;
}

QVariant QcbsLoopTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    if (role == Qt::DisplayRole)
        return name(section);
    if (role == Qt::ToolTipRole)
        return name(section) + QStringLiteral(": right button for its help; drag to move the column");
    return {};
}

int QcbsLoopTableModel::missingInLastRow() const
{
    int missing = 0;
    for (const Column& column : columns_)
        if (int(column.item->value_count()) < rows_)
            ++missing;
    return missing;
}

void QcbsLoopTableModel::store(int row, int column, std::string_view text)
{
    Column& c = columns_[std::size_t(column)];
    const int result = c.item->set_value(std::size_t(row), text);
    std::uint8_t& status = c.status[std::size_t(row)];
    failing_ += (result != 0) - (status != 0);
    status = std::uint8_t(result);
}

void QcbsLoopTableModel::setValue(int row, int column, const QString& text)
{
    store(row, column, text.toStdString());
    const QModelIndex cell = index(row, column);
    emit dataChanged(cell, cell);
    emit summaryChanged();
}

bool QcbsLoopTableModel::addRow()
{
    if (columns_.empty())
        return false;
    beginInsertRows(QModelIndex(), rows_, rows_);
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        columns_[c].status.push_back(0);
        store(rows_, int(c), std::string_view());
    }
    ++rows_;
    endInsertRows();
    emit summaryChanged();
    return true;
}

bool QcbsLoopTableModel::addColumn(const std::string& name)
{
    if (name.empty() || std::any_of(columns_.begin(), columns_.end(),
                                    [&name](const Column& c) { return cif_names_equal(c.name, name); }))
        return false;
    const HCifDataItem item = block_->add_item(name);
    std::vector<std::string> names;
    for (const Column& column : columns_)
        names.push_back(column.name);
    names.push_back(name);
    block_->make_loop(names);

    const int at = int(columns_.size());
    beginInsertColumns(QModelIndex(), at, at);
    columns_.push_back({name, item, {}, true});
    // The new cells hold no value until one is typed; they are marked if even that fails.
    Column& added = columns_.back();
    added.checked = checks(added);
    const std::uint8_t empty = added.checked ? std::uint8_t(item->check(std::string())) : 0;
    added.status.assign(std::size_t(rows_), empty);
    failing_ += empty ? rows_ : 0;
    endInsertColumns();
    emit summaryChanged();
    return true;
}

void QcbsLoopTableModel::removeRows(std::vector<int> rows)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.erase(std::remove_if(rows.begin(), rows.end(), [this](int r) { return r < 0 || r >= rows_; }),
               rows.end());
    if (rows.empty())
        return;
    std::vector<bool> gone(std::size_t(rows_), false);
    for (int r : rows)
        gone[std::size_t(r)] = true;
    beginResetModel();
    // Each column is written afresh without the rows: one pass however many rows go.
    for (Column& column : columns_) {
        std::vector<std::string> kept;
        std::vector<std::uint8_t> status;
        kept.reserve(std::size_t(rows_) - rows.size());
        for (int r = 0; r < rows_; ++r)
            if (!gone[std::size_t(r)]) {
                kept.emplace_back(column.item->value_view(std::size_t(r)));
                status.push_back(column.status[std::size_t(r)]);
            }
        column.item->clear_values();
        for (const std::string& value : kept)
            column.item->add_value(value);
        column.status = std::move(status);
    }
    rows_ -= int(rows.size());
    recount();
    endResetModel();
    emit summaryChanged();
}

void QcbsLoopTableModel::removeColumns(std::vector<int> columns)
{
    std::sort(columns.begin(), columns.end(), std::greater<int>());
    columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
    beginResetModel();
    for (int c : columns) {
        if (c < 0 || c >= int(columns_.size()))
            continue;
        block_->remove_item(columns_[std::size_t(c)].name);
        columns_.erase(columns_.begin() + c);
    }
    if (columns_.empty())
        rows_ = 0;
    recount();
    endResetModel();
    emit summaryChanged();
}

void QcbsLoopTableModel::insertCell(Cell cell)
{
    const int width = int(columns_.size());
    if (cell.first < 0 || cell.first >= rows_ || cell.second < 0 || cell.second >= width)
        return;
    if (!value(rows_ - 1, width - 1).isEmpty())
        addRow();
    const long long start = (long long)cell.first * width + cell.second;
    for (long long f = (long long)rows_ * width - 1; f > start; --f) {
        const int from = int((f - 1) / width), fromColumn = int((f - 1) % width);
        store(int(f / width), int(f % width),
              columns_[std::size_t(fromColumn)].item->value(std::size_t(from)));
    }
    store(cell.first, cell.second, std::string_view());
    emit dataChanged(index(cell.first, 0), index(rows_ - 1, width - 1));
    emit summaryChanged();
}

void QcbsLoopTableModel::deleteCells(const std::vector<Cell>& cells)
{
    const int width = int(columns_.size());
    std::set<long long> selected;
    for (const Cell& cell : cells)
        if (cell.first >= 0 && cell.first < rows_ && cell.second >= 0 && cell.second < width)
            selected.insert((long long)cell.first * width + cell.second);
    if (selected.empty())
        return;
    const long long total = (long long)rows_ * width;
    long long passed = 0;
    for (long long f = *selected.begin(); f < total; ++f) {
        if (selected.count(f)) {
            ++passed;
            continue;
        }
        const long long to = f - passed;
        store(int(to / width), int(to % width),
              columns_[std::size_t(f % width)].item->value(std::size_t(f / width)));
    }
    for (long long f = total - passed; f < total; ++f)
        store(int(f / width), int(f % width), std::string_view());
    emit dataChanged(index(int(*selected.begin() / width), 0), index(rows_ - 1, width - 1));

    std::vector<int> empty;
    for (int row = rows_ - 1; row >= 0; --row) {
        bool blank = true;
        for (int c = 0; c < width && blank; ++c)
            blank = columns_[std::size_t(c)].item->value_view(std::size_t(row)).empty();
        if (!blank)
            break;
        empty.push_back(row);
    }
    if (!empty.empty())
        removeRows(empty);
    else
        emit summaryChanged();
}

void QcbsLoopTableModel::moveRow(int from, int to)
{
    if (from == to || from < 0 || to < 0 || from >= rows_ || to >= rows_)
        return;
    beginMoveRows(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to);
    const int step = to > from ? 1 : -1;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        Column& column = columns_[c];
        const std::string moved = column.item->value(std::size_t(from));
        const std::uint8_t movedStatus = column.status[std::size_t(from)];
        for (int r = from; r != to; r += step) {
            // A copy: storing may move the characters a view would point into.
            column.item->set_value(std::size_t(r), column.item->value(std::size_t(r + step)));
            column.status[std::size_t(r)] = column.status[std::size_t(r + step)];
        }
        column.item->set_value(std::size_t(to), moved);
        column.status[std::size_t(to)] = movedStatus;
    }
    endMoveRows();
}

void QcbsLoopTableModel::moveColumn(int from, int to)
{
    const int width = int(columns_.size());
    if (from == to || from < 0 || to < 0 || from >= width || to >= width)
        return;
    beginMoveColumns(QModelIndex(), from, from, QModelIndex(), to > from ? to + 1 : to);
    Column moved = std::move(columns_[std::size_t(from)]);
    columns_.erase(columns_.begin() + from);
    columns_.insert(columns_.begin() + to, std::move(moved));
    std::vector<std::string> names;
    for (const Column& column : columns_)
        names.push_back(column.name);
    // The items and the loop's names take the table's order, where the loop's first column stood.
    block_->set_write_order(names, CifDataBlock::AtFirstInList);
    endMoveColumns();
}

QcbsLoopTableModel::Cell QcbsLoopTableModel::nextFailing(Cell from) const
{
    const long long width = (long long)columns_.size();
    const long long total = rows_ * width;
    if (failing_ == 0 || total == 0)
        return {-1, -1};
    const long long start = std::max(-1LL, (long long)from.first * width + from.second);
    for (long long step = 1; step <= total; ++step) {
        const long long f = (start + step) % total;
        if (columns_[std::size_t(f % width)].status[std::size_t(f / width)])
            return {int(f / width), int(f % width)};
    }
    return {-1, -1};
}

std::string QcbsLoopTableModel::loopText(unsigned lineLimit) const
{
    if (columns_.empty())
        return std::string();
    std::ostringstream out;
    block_->write(out, lineLimit);
    const std::string text = out.str();
    // The scratch block's heading line is no part of the loop.
    return text.substr(text.find('\n') + 1);
}
