#include "QcbsJournalListBox.h"

#include "Journal.h"
#include "QcbsJournalListBoxItem.h"

#include <QCompleter>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStringListModel>

QcbsJournalListBox::QcbsJournalListBox(QWidget* parent)
    : QListWidget(parent), shown_(new QStringListModel(this)), completer_(new QCompleter(shown_, this))
{
    // The numbers run in the order of the names, punctuation aside.
    for (int number = 1; number <= Journal::count(); ++number)
        new QcbsJournalListBoxItem(Journal(number), this);
    shown_->setStringList(visibleNames());
    // The tip of a row gives a name too long to show; a sideways scroll would hide the others.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_->setCaseSensitivity(Qt::CaseInsensitive);

    connect(this, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { emit selected(item->text()); });
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { emit selected(item->text()); });
}

void QcbsJournalListBox::attach(QLineEdit* edit)
{
    edit->setCompleter(completer_);
    connect(this, &QcbsJournalListBox::selected, edit, &QLineEdit::setText);
    connect(edit, &QLineEdit::textChanged, this, &QcbsJournalListBox::updateJournalList);
}

QStringList QcbsJournalListBox::visibleNames() const
{
    QStringList names;
    for (int row = 0; row < count(); ++row)
        if (!item(row)->isHidden())
            names << item(row)->text();
    return names;
}

// Punctuation goes first and blanks with it: names are written both "J. Am. Chem. Soc." and
// "J.Am.Chem.Soc.", and a user types neither form exactly.
QString QcbsJournalListBox::filterKey(const QString& text)
{
    static const QRegularExpression punctuation(QStringLiteral("[\\.\\,\\;\\:\\(\\)\\[\\]]"));
    QString key = QString(text).remove(punctuation).simplified();
    key.remove(QLatin1Char(' '));
    return key.toCaseFolded();
}

void QcbsJournalListBox::updateJournalList(const QString& text)
{
    const QString typed = filterKey(text);
    for (int row = 0; row < count(); ++row) {
        auto* journal = static_cast<QcbsJournalListBoxItem*>(item(row));
        journal->setHidden(!journal->filterKey().startsWith(typed));
    }
    shown_->setStringList(visibleNames());
}
