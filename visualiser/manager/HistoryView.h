#pragma once

#include <QWidget>

class QTableWidget;
class VisLibCommandHistory;

// A debugging aid: the commands of a history in a table, oldest first, with the one an undo
// would take back marked. It follows the history as commands come and go.
class HistoryView : public QWidget {
    Q_OBJECT

public:
    explicit HistoryView(VisLibCommandHistory* history, QWidget* parent = nullptr);

private slots:
    void refresh();

private:
    VisLibCommandHistory* history_;
    QTableWidget* table_;
};
