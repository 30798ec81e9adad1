#include "HistoryView.h"

#include "VisLibCommandHistory.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

HistoryView::HistoryView(VisLibCommandHistory* history, QWidget* parent)
    : QWidget(parent), history_(history), table_(new QTableWidget(0, 2, this))
{
    setWindowTitle("Command History Debugger");
    table_->setObjectName("Table");
    table_->setHorizontalHeaderLabels({"", "Command"});
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->verticalHeader()->hide();
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_);

    connect(history_, &VisLibCommandHistory::undoRedoChanged, this, &HistoryView::refresh);
    refresh();
}

void HistoryView::refresh()
{
    table_->setRowCount(history_->count());
    for (int i = 0; i < history_->count(); ++i) {
        table_->setItem(i, 0, new QTableWidgetItem(i == history_->index() ? ">" : ""));
        table_->setItem(i, 1, new QTableWidgetItem(history_->command(i)->name()));
    }
}
