#include "QcbsErrorListView.h"

#include "QcbsErrorListViewItem.h"
#include "QcbsKeyListViewItem.h"

#include <QHeaderView>
#include <QRegularExpression>
#include <QStyle>
#include <algorithm>
#include <iterator>

namespace {

struct HelpPage {
    int code;
    const char* page;
};

// Sorted by code. Codes without a page of their own have no row.
constexpr HelpPage helpPages[] = {
    {302, "062"}, {303, "086"}, {304, "087"}, {305, "071"}, {306, "059"}, {307, "058"}, {308, "060"},
    {309, "070"}, {310, "061"}, {311, "073"}, {312, "072"}, {313, "074"}, {318, "055"}, {319, "076"},
    {320, "078"}, {321, "056"}, {322, "057"}, {324, "079"}, {325, "081"}, {326, "080"}, {327, "082"},
    {328, "082"}, {329, "083"}, {343, "085"}, {346, "066"}, {347, "075"}, {348, "067"}, {349, "067"},
    {350, "063"}, {351, "064"}, {352, "064"}, {353, "065"},
};

} // namespace

QcbsErrorListView::QcbsErrorListView(QWidget* parent) : QTreeWidget(parent)
{
    setColumnCount(2);
    setRootIsDecorated(true);
    setHeaderHidden(true);
    header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    setToolTip(QStringLiteral("Double-click item to view"));
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
    clear();

    connect(this, &QTreeWidget::itemDoubleClicked, this, &QcbsErrorListView::doubleClickedItem);
    connect(this, &QWidget::customContextMenuRequested, this, &QcbsErrorListView::requestHelpAt);
}

void QcbsErrorListView::addError(const QString& message, int line, int code)
{
    addItem(Errors, message, line, code);
}

void QcbsErrorListView::addWarning(const QString& message, int line, int code)
{
    addItem(Warnings, message, line, code);
}

void QcbsErrorListView::addRemark(const QString& message, int line, int code)
{
    addItem(Remarks, message, line, code);
}

QTreeWidgetItem* QcbsErrorListView::root(Kind kind) const
{
    return roots_[kind];
}

QString QcbsErrorListView::helpPage(int code)
{
    const auto found = std::lower_bound(std::begin(helpPages), std::end(helpPages), code,
                                        [](const HelpPage& row, int sought) { return row.code < sought; });
    if (found == std::end(helpPages) || found->code != code)
        return {};
    return QStringLiteral("cifward/PortableHTML/cifward-1-") + QLatin1String(found->page) +
           QStringLiteral(".html");
}

void QcbsErrorListView::addItem(Kind kind, const QString& message, int line, int code)
{
    // The right-justified number keeps the lines in numeric order under the text sort.
    const QString where = QStringLiteral("Line ") + QStringLiteral("%1").arg(line, 7);
    static const QRegularExpression newLine(QStringLiteral("\\r\\n|\\n|\\r"));
    QString cleaned = message;
    cleaned.replace(newLine, QStringLiteral(" ... "));
    cleaned.truncate(maxMessageLength);

    new QcbsErrorListViewItem(roots_[kind], {where, cleaned}, code);
    ++counts_[kind];
    roots_[kind]->setText(1, QStringLiteral("  Total of ") + QString::number(counts_[kind]));
}

void QcbsErrorListView::clear()
{
    QTreeWidget::clear();
    const QStyle::StandardPixmap icons[] = {QStyle::SP_MessageBoxCritical, QStyle::SP_MessageBoxWarning,
                                            QStyle::SP_MessageBoxInformation};
    const char* const names[] = {"Errors", "Warnings", "Remarks"};
    for (int kind = Errors; kind <= Remarks; ++kind) {
        roots_[kind] = new QcbsKeyListViewItem(this, QString::number(kind + 1),
                                               {QLatin1String(names[kind]), QStringLiteral(" - none")});
        roots_[kind]->setIcon(0, style()->standardIcon(icons[kind]));
        roots_[kind]->setExpanded(true);
        counts_[kind] = 0;
    }
}

void QcbsErrorListView::doubleClickedItem(QTreeWidgetItem* item)
{
    if (!item)
        return;
    // A message may name a second line, such as the first setting of a repeated item: that line
    // gets the first mark, and the finding's own line the second.
    bool marked = false;
    const QString message = item->text(1);
    const QLatin1String lineTag("line:");
    const int at = message.indexOf(lineTag);
    if (at > 0) {
        bool ok = false;
        const int named = message.mid(at + lineTag.size()).trimmed().toInt(&ok);
        if (ok) {
            emit requestHighlightLine(named, 1, true);
            marked = true;
        }
    }
    bool ok = false;
    const int own = item->text(0).mid(4).trimmed().toInt(&ok);
    if (ok)
        emit requestHighlightLine(own, 2, !marked);
}

void QcbsErrorListView::showHelp(QTreeWidgetItem* item, const QPoint& pos, int column)
{
    Q_UNUSED(pos);
    if (column != 1 || !item || item->type() != QcbsErrorListViewItem::Type)
        return;
    const QString page = helpPage(static_cast<QcbsErrorListViewItem*>(item)->code());
    if (!page.isEmpty())
        emit helpRequest(page);
}

void QcbsErrorListView::requestHelpAt(const QPoint& viewportPos)
{
    showHelp(itemAt(viewportPos), viewport()->mapToGlobal(viewportPos), columnAt(viewportPos.x()));
}
