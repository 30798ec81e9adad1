#ifndef CIFWARD_QCBSEDITDATADIALOGUE_H
#define CIFWARD_QCBSEDITDATADIALOGUE_H

#include "CifDataBlock.h"
#include "CifDictionary.h"

#include <QDialog>
#include <QString>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// Gives one data name of a block a value: from the dictionary's list of values where it has one,
// typed otherwise. The result is the CIF text of the pair as the writer writes it, quoting
// included, for the editor to put in place of the old one.
class QcbsEditDataDialogue : public QDialog {
    Q_OBJECT
public:
    // The block's dictionary gives the list and checks the value. Without `maySet`, or for an
    // item that is a column of a loop, the dialog only shows the value and has a Close button.
    QcbsEditDataDialogue(const HCifDataBlock& block, const QString& itemName, unsigned lineLimit,
                         bool maySet = true, QWidget* parent = nullptr);

    const QString& itemName() const { return itemName_; }
    const QString& blockName() const { return blockName_; }
    bool maySet() const { return maySet_; }
    // The value as it stands in the list or the box.
    QString value() const;

    // The pair `name` `value` as the writer writes it alone in a block, without the block's
    // heading: the name padded, the value quoted or made a text field as CIF needs.
    static QString pairText(const HCifDictionary& dictionary, const QString& name, const QString& value,
                            unsigned lineLimit);

public slots:
    void ok();

signals:
    void setDataItemTextRequest(const QString& block, const QString& name, const QString& text);
    void userDidClose();

private:
    void showCheck();

    QString itemName_;
    QString blockName_;
    HCifDictionary dictionary_;
    HCifDataItem probe_; // checks the value as it is typed, apart from the document
    unsigned lineLimit_;
    bool maySet_;
    QComboBox* combo_ = nullptr;
    QLineEdit* line_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    QLabel* check_ = nullptr;
    QPushButton* okButton_ = nullptr;
};

#endif
