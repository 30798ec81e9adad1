#ifndef CIFWARD_QCBSWIZARDSPACEGROUPPAGE_H
#define CIFWARD_QCBSWIZARDSPACEGROUPPAGE_H

#include "QcbsWizardPage.h"

class QComboBox;
class QLineEdit;
class QPushButton;

// Crystal system, space group number and Hermann-Mauguin symbol, kept in step with one another,
// and the symbol checked against the block's symmetry operators: a symbol that names another
// group than its operators form is the most common fault of a submitted CIF.
class QcbsWizardSpaceGroupPage : public QcbsWizardPage {
    Q_OBJECT
public:
    explicit QcbsWizardSpaceGroupPage(QWidget* parent = nullptr);

    void loadFields(const CifDataBlock& block) override;

    // The table's name for a symbol as files write it ("P 21/c", "P2~1~/c"), or "Unknown".
    static QString tableName(const QString& symbol);
    // The crystal system of a space group number, empty for none.
    static QString crystalSystem(int number);

    QString warning() const;
    // The symbol the operators give, offered with one click while the two disagree.
    QPushButton* offer() const { return offer_; }

public slots:
    void updateSpacegroupNumber(const QString& text);
    void updateSpacegroupName(const QString& text);
    void updateCellSetting(int index);
    void inSpacegroupNameEdit(const QString& text);

private:
    void checkSymbol();
    void listSymbolsOf(int number);
    void takeOperatorsSymbol();

    QComboBox* system_;
    QLineEdit* number_;
    QComboBox* symbol_;
    QLabel* warning_;
    QPushButton* offer_;
    QString operatorsName_ = QStringLiteral("Unknown");
    // Set while one field updates another, so that the change does not come back round.
    bool linking_ = false;
};

#endif
