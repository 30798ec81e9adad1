#ifndef CIFWARD_QCBSCIFCOMBINEDIALOGUE_H
#define CIFWARD_QCBSCIFCOMBINEDIALOGUE_H

#include "Cif.h"

#include <QDialog>
#include <QString>
#include <cstddef>

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QTableWidget;

// Merges data from other blocks into one block of the file: from the blocks of the template, or
// from the file's other blocks. The user ticks the blocks to take from and says whether their
// values replace the block's own; the block comes back as CIF text for the editor.
class QcbsCifCombineDialogue : public QDialog {
    Q_OBJECT
public:
    // Block `targetIndex` of `target` receives the data; `source` is the template, read from
    // the file `sourceName`.
    QcbsCifCombineDialogue(const HCif& target, std::size_t targetIndex, const HCif& source,
                           const QString& sourceName, unsigned lineLimit, QWidget* parent = nullptr);

    QTableWidget* table() const { return table_; }
    // Takes the blocks from the template, or from the file's other blocks.
    void useTemplate(bool fromTemplate);
    // The block's text after merging the ticked blocks, from its "data_" line to its end; empty
    // when the block does not exist. Merging changes the target's block, so it is done once.
    QString merge();

public slots:
    void ok();

signals:
    void blockUpdated(const QString& text);

private:
    void fillTable();
    void updateOkButton();
    const HCif& currentSource() const;

    HCif target_;
    HCif source_;
    std::size_t targetIndex_;
    unsigned lineLimit_;
    bool fromTemplate_ = true;
    QRadioButton* templateChoice_;
    QRadioButton* fileChoice_;
    QTableWidget* table_;
    QCheckBox* replace_;
    QLabel* warning_;
    QPushButton* okButton_;
};

#endif
