#include "QcbsLoopTableEditorImpl.h"

#include "QcbsCifBoxViewDialogImpl.h"
#include "QcbsLoopTable.h"
#include "QcbsLoopTableModel.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace {

QString counted(int n, const char* one, const char* many)
{
    return QString::number(n) + QLatin1Char(' ') + QLatin1String(n == 1 ? one : many);
}

} // namespace

QcbsLoopTableEditorImpl::QcbsLoopTableEditorImpl(const HCif& document, const QString& helpDirectory,
                                                 unsigned lineLimit, QWidget* parent)
    : QDialog(parent), document_(document), lineLimit_(lineLimit),
      loopTable_(new QcbsLoopTable(helpDirectory, this)), summary_(new QLabel(this))
{
    setObjectName(QStringLiteral("loop editor"));
    setWindowTitle(QStringLiteral("Loop Editor"));
    summary_->setObjectName(QStringLiteral("summary"));

    auto* left = new QGroupBox(QStringLiteral("Rows and columns"), this);
    left->setObjectName(QStringLiteral("LeftGroupBox"));
    auto* leftRow = new QHBoxLayout(left);
    leftRow->addWidget(addButton("newRowButton", QStringLiteral("New &Row"),
                                 QStringLiteral("Add an empty row at the end (Alt+R)"), {}));
    leftRow->addWidget(addButton("newColumnButton", QStringLiteral("New &Column"),
                                 QStringLiteral("Add a data name as a new, empty column (Alt+C)"), {}));
    leftRow->addWidget(addButton("deleteRowBox", QStringLiteral("Delete Rows"),
                                 QStringLiteral("Delete the rows of the selected cells (Ctrl+Shift+R)"),
                                 QKeySequence(QStringLiteral("Ctrl+Shift+R"))));
    leftRow->addWidget(addButton("deleteColumnButton", QStringLiteral("Delete Columns"),
                                 QStringLiteral("Delete the columns of the selected cells (Ctrl+Shift+C)"),
                                 QKeySequence(QStringLiteral("Ctrl+Shift+C"))));
    leftRow->addStretch();

    auto* right = new QGroupBox(QStringLiteral("Cells, in reading order"), this);
    right->setObjectName(QStringLiteral("RightGroupBox"));
    auto* rightRow = new QHBoxLayout(right);
    rightRow->addWidget(addButton("insertCellButton", QStringLiteral("Insert Cell"),
                                  QStringLiteral("An empty cell before the selected one: the values "
                                                 "after it move on by one (Ctrl+I)"),
                                  QKeySequence(QStringLiteral("Ctrl+I"))));
    rightRow->addWidget(addButton("deleteCellButton", QStringLiteral("Delete Cells"),
                                  QStringLiteral("Take the selected cells out: the values after them "
                                                 "move back (Ctrl+D)"),
                                  QKeySequence(QStringLiteral("Ctrl+D"))));
    rightRow->addWidget(addButton("nextFailingButton", QStringLiteral("&Next Failing Cell"),
                                  QStringLiteral("Go to the next value that fails its check (F8)"),
                                  QKeySequence(Qt::Key_F8)));
    rightRow->addStretch();
    QPushButton* ok =
        addButton("okButton", QStringLiteral("OK"), QStringLiteral("Put the loop back into the editor"), {});
    ok->setDefault(true);
    rightRow->addWidget(ok);
    rightRow->addWidget(addButton("cancelButton", QStringLiteral("Cancel"),
                                  QStringLiteral("Close, leaving the file as it was"), {}));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(left);
    layout->addWidget(loopTable_, 1);
    layout->addWidget(summary_);
    layout->addWidget(right);
    resize(900, 600);

    const QList<std::pair<const char*, void (QcbsLoopTableEditorImpl::*)()>> handlers = {
        {"newRowButton", &QcbsLoopTableEditorImpl::newRow},
        {"newColumnButton", &QcbsLoopTableEditorImpl::newCol},
        {"deleteRowBox", &QcbsLoopTableEditorImpl::deleteRow},
        {"deleteColumnButton", &QcbsLoopTableEditorImpl::deleteCol},
        {"insertCellButton", &QcbsLoopTableEditorImpl::insertCell},
        {"deleteCellButton", &QcbsLoopTableEditorImpl::deleteCell},
        {"nextFailingButton", &QcbsLoopTableEditorImpl::nextFailingCell},
        {"okButton", &QcbsLoopTableEditorImpl::slotOK},
        {"cancelButton", &QcbsLoopTableEditorImpl::slotCancel},
    };
    for (const auto& [name, slot] : handlers)
        connect(findChild<QPushButton*>(QLatin1String(name)), &QPushButton::clicked, this, slot);
    connect(loopTable_->loopModel(), &QcbsLoopTableModel::summaryChanged, this,
            &QcbsLoopTableEditorImpl::updateSummary);
    updateSummary();
}

QPushButton* QcbsLoopTableEditorImpl::addButton(const char* objectName, const QString& text,
                                                const QString& tip, const QKeySequence& key)
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(objectName));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    if (!key.isEmpty())
        button->setShortcut(key);
    return button;
}

bool QcbsLoopTableEditorImpl::setLoop(const QString& name, const HCifDataBlock& block)
{
    const bool failed = loopTable_->setLoop(name, block);
    if (!failed)
        loopTable_->setCurrentIndex(loopTable_->model()->index(0, 0));
    return failed;
}

void QcbsLoopTableEditorImpl::newLoop(const HCifDictionary& dictionary)
{
    loopTable_->newLoop(dictionary);
}

QString QcbsLoopTableEditorImpl::summary() const
{
    return summary_->text();
}

void QcbsLoopTableEditorImpl::updateSummary()
{
    const QcbsLoopTableModel* model = loopTable_->loopModel();
    QString text = counted(model->rowCount(), "row", "rows") + QStringLiteral(", ") +
                   counted(model->columnCount(), "column", "columns") + QStringLiteral("; ") +
                   counted(model->failingCount(), "cell fails its check", "cells fail their check");
    if (const int missing = model->missingInLastRow())
        text += QStringLiteral("; the last row lacks ") + counted(missing, "value", "values") +
                QStringLiteral(" (Insert Cell and Delete Cells mend it)");
    summary_->setText(text);
    findChild<QPushButton*>(QStringLiteral("nextFailingButton"))->setEnabled(model->failingCount() > 0);
}

void QcbsLoopTableEditorImpl::newRow()
{
    if (!loopTable_->loopModel()->addRow())
        QApplication::beep();
}

void QcbsLoopTableEditorImpl::newCol()
{
    auto* chooser = new QcbsCifBoxViewDialogImpl(document_, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(chooser, &QcbsCifBoxViewDialogImpl::insertTextRequest, this, &QcbsLoopTableEditorImpl::addCol);
    chooser->open();
}

void QcbsLoopTableEditorImpl::addCol(const QString& name)
{
    QcbsLoopTableModel* model = loopTable_->loopModel();
    if (!model->addColumn(name.trimmed().toStdString())) {
        QApplication::beep();
        return;
    }
    const int column = model->columnCount() - 1;
    QHeaderView* header = loopTable_->horizontalHeader();
    header->resizeSection(column, std::max(150, header->sectionSize(column)));
    loopTable_->setCurrentIndex(model->index(0, column));
}

void QcbsLoopTableEditorImpl::deleteRow()
{
    std::vector<int> rows;
    for (const auto& cell : loopTable_->selectedCells())
        rows.push_back(cell.first);
    loopTable_->loopModel()->removeRows(rows);
}

void QcbsLoopTableEditorImpl::deleteCol()
{
    std::vector<int> columns;
    for (const auto& cell : loopTable_->selectedCells())
        columns.push_back(cell.second);
    loopTable_->loopModel()->removeColumns(columns);
}

void QcbsLoopTableEditorImpl::insertCell()
{
    const auto cells = loopTable_->selectedCells();
    if (cells.empty())
        return;
    // The last row that holds a selected cell, and the first selected column in it.
    const auto chosen = std::min_element(cells.begin(), cells.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    const auto cell = *chosen;
    loopTable_->loopModel()->insertCell(cell);
    loopTable_->setCurrentIndex(loopTable_->model()->index(cell.first, cell.second));
}

void QcbsLoopTableEditorImpl::deleteCell()
{
    loopTable_->loopModel()->deleteCells(loopTable_->selectedCells());
}

void QcbsLoopTableEditorImpl::nextFailingCell()
{
    const QModelIndex current = loopTable_->currentIndex();
    const auto next = loopTable_->loopModel()->nextFailing(
        {current.isValid() ? current.row() : -1, current.isValid() ? current.column() : -1});
    if (next.first < 0) {
        QApplication::beep();
        return;
    }
    const QModelIndex target = loopTable_->model()->index(next.first, next.second);
    loopTable_->setCurrentIndex(target);
    loopTable_->scrollTo(target);
}

void QcbsLoopTableEditorImpl::slotOK()
{
    QString text;
    loopTable_->loopText(text, lineLimit_);
    emit loopUpdated(text);
    accept();
}

void QcbsLoopTableEditorImpl::slotCancel()
{
    reject();
}
