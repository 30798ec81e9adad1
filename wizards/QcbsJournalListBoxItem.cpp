#include "QcbsJournalListBoxItem.h"

#include "QcbsJournalListBox.h"

QcbsJournalListBoxItem::QcbsJournalListBoxItem(const Journal& journal, QListWidget* list)
    : QListWidgetItem(QString::fromStdString(journal.name()), list),
      filterKey_(QcbsJournalListBox::filterKey(text()))
{
    const QString coden = QString::fromStdString(journal.coden());
    QString tip = coden.front().isDigit() ? QStringLiteral("Journal number %1").arg(journal.number())
                                          : QStringLiteral("CODEN %1").arg(coden);
    if (journal.discontinued()) {
        tip += QStringLiteral(", no longer published");
        QFont slanted = font();
        slanted.setItalic(true);
        setFont(slanted);
    }
    setToolTip(text() + QLatin1Char('\n') + tip);
}
