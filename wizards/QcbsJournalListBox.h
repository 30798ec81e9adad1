#ifndef CIFWARD_QCBSJOURNALLISTBOX_H
#define CIFWARD_QCBSJOURNALLISTBOX_H

#include <QListWidget>
#include <QStringList>

class QCompleter;
class QLineEdit;
class QStringListModel;

// Every journal of the compiled-in list, narrowed as the user types the start of a name. The
// comparison ignores full stops, commas, colons, semicolons, brackets, blanks and case, so that
// "Acta Cryst B" finds "Acta Crystallogr.,Sect.B:Struct.Sci.".
class QcbsJournalListBox : public QListWidget {
    Q_OBJECT
public:
    explicit QcbsJournalListBox(QWidget* parent = nullptr);

    // Makes `edit` and this list work as one: typing narrows the list, choosing a journal fills
    // the edit, and the edit completes from the journals still shown.
    void attach(QLineEdit* edit);
    QStringList visibleNames() const;

    // What the filter compares of a name or of the typed text.
    static QString filterKey(const QString& text);

signals:
    void selected(const QString& name);

public slots:
    void updateJournalList(const QString& text);

private:
    QStringListModel* shown_;
    QCompleter* completer_;
};

#endif
