#ifndef CIFWARD_QCBSDATAITEMINFO_H
#define CIFWARD_QCBSDATAITEMINFO_H

#include "CifDictionary.h"
#include "QcbsRichTextEdit.h"

#include <QString>
#include <QStringList>

// What the dictionaries say of one data name, with what the installation adds to it, shown read
// only in a window of its own: the definition, the recommended values, the range in words, the
// installation's notes and the numbered examples.
class QcbsDataItemInfo : public QcbsRichTextEdit {
    Q_OBJECT
public:
    // `helpDirectory` is the program's documentation directory; the extra value lists and notes
    // are looked for in its folders "choices_extra" and "info_extra".
    QcbsDataItemInfo(const QString& name, const HCifDictionary& dictionary, const QString& helpDirectory,
                     QWidget* parent = nullptr);

    const QString& dataItemName() const { return name_; }

    // The folders that may hold the extra texts, in the order they are tried: the directory that
    // CIFWARDPREFS names, when it is set, then the help directory.
    static QStringList extraDirectories(const QString& helpDirectory);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void compose(const QString& helpDirectory);

    HCifDictionary dictionary_;
    QString name_;
};

#endif
