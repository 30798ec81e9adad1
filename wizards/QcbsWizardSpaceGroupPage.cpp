#include "QcbsWizardSpaceGroupPage.h"

#include "CifDataBlock.h"
#include "Spacegroup.h"
#include "SpacegroupTable.h"

#include <QComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <stdexcept>

namespace {
const QString unknownGroup = QStringLiteral("Unknown");

// The operators of the block, under the older name or the newer one.
std::vector<SymmOp> blockOperators(const CifDataBlock& block)
{
    std::vector<SymmOp> ops;
    for (const char* name : {"_symmetry_equiv_pos_as_xyz", "_space_group_symop_operation_xyz"}) {
        HCifDataItem item = block.item(name);
        if (!item || !item->has_value())
            continue;
        for (std::size_t row = 0; row < item->value_count(); ++row)
            ops.emplace_back(item->value(row));
        break;
    }
    return ops;
}
} // namespace

QcbsWizardSpaceGroupPage::QcbsWizardSpaceGroupPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Symmetry Information...   (page "),
                     QStringLiteral("Enter details of the crystallographic symmetry of this structure"),
                     parent),
      system_(new QComboBox(this)), number_(new QLineEdit(this)), symbol_(new QComboBox(this)),
      warning_(new QLabel(this)), offer_(new QPushButton(this))
{
    system_->addItems({QStringLiteral("?"), QStringLiteral("triclinic"), QStringLiteral("monoclinic"),
                       QStringLiteral("orthorhombic"), QStringLiteral("tetragonal"),
                       QStringLiteral("rhombohedral"), QStringLiteral("trigonal"),
                       QStringLiteral("hexagonal"), QStringLiteral("cubic")});
    number_->setValidator(new QIntValidator(1, 999, number_));
    symbol_->setEditable(true);
    symbol_->setInsertPolicy(QComboBox::NoInsert);
    addField(QStringLiteral("Crystal system:"), QStringLiteral("_symmetry_cell_setting"), system_);
    addField(QStringLiteral("International Tables space group number:"),
             QStringLiteral("_symmetry_Int_Tables_number"), number_);
    addField(QStringLiteral("Hermann-Mauguin space group symbol:"),
             QStringLiteral("_symmetry_space_group_name_H-M"), symbol_);
    warning_->setStyleSheet(QStringLiteral("color: #b00000"));
    warning_->setWordWrap(true);
    content()->addSpacing(12);
    content()->addWidget(warning_);
    content()->addWidget(offer_, 0, Qt::AlignLeft);
    content()->addStretch();
    offer_->hide();

    connect(number_, &QLineEdit::textChanged, this, &QcbsWizardSpaceGroupPage::updateSpacegroupNumber);
    connect(symbol_, &QComboBox::textActivated, this, &QcbsWizardSpaceGroupPage::updateSpacegroupName);
    connect(symbol_, &QComboBox::editTextChanged, this, &QcbsWizardSpaceGroupPage::inSpacegroupNameEdit);
    connect(system_, &QComboBox::activated, this, &QcbsWizardSpaceGroupPage::updateCellSetting);
    connect(offer_, &QPushButton::clicked, this, &QcbsWizardSpaceGroupPage::takeOperatorsSymbol);
}

QString QcbsWizardSpaceGroupPage::tableName(const QString& symbol)
{
    static const QRegularExpression markup(QStringLiteral("[\\(\\)\\~\\^\\s]"));
    const QString cleaned = QString(symbol).remove(markup);
    if (cleaned.isEmpty())
        return unknownGroup;
    try {
        return QString::fromStdString(Spacegroup(cleaned.toStdString()).name());
    } catch (const std::exception&) {
        return unknownGroup;
    }
}

QString QcbsWizardSpaceGroupPage::crystalSystem(int number)
{
    // Incomplete symbols are numbered 500 above the highest complete group of their Laue class.
    const int n = number > 500 ? number - 500 : number;
    const struct {
        int last;
        const char* system;
    } ranges[] = {{2, "triclinic"},  {15, "monoclinic"}, {74, "orthorhombic"}, {142, "tetragonal"},
                  {167, "trigonal"}, {194, "hexagonal"}, {230, "cubic"}};
    if (n < 1)
        return {};
    for (const auto& range : ranges)
        if (n <= range.last)
            return QString::fromLatin1(range.system);
    return {};
}

void QcbsWizardSpaceGroupPage::loadFields(const CifDataBlock& block)
{
    linking_ = true;
    listSymbolsOf(QcbsWizardField::value(block, QStringLiteral("_symmetry_Int_Tables_number")).toInt());
    QcbsWizardPage::loadFields(block);
    linking_ = false;

    operatorsName_ = unknownGroup;
    try {
        const std::vector<SymmOp> ops = blockOperators(block);
        if (!ops.empty())
            operatorsName_ = QString::fromStdString(Spacegroup(ops).name());
    } catch (const std::exception&) {
        // An operator that cannot be read names no group, as operators that form none do.
    }
    checkSymbol();
}

void QcbsWizardSpaceGroupPage::listSymbolsOf(int number)
{
    const QString typed = symbol_->currentText();
    symbol_->clear();
    for (std::size_t r = 0; r < SpacegroupTable::size(); ++r) {
        const SpacegroupRow& row = SpacegroupTable::rows()[r];
        const QString name = QString::fromLatin1(row.name);
        if (row.number == number && symbol_->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
            symbol_->addItem(name);
    }
    symbol_->setEditText(typed);
}

void QcbsWizardSpaceGroupPage::updateSpacegroupNumber(const QString& text)
{
    if (linking_)
        return;
    linking_ = true;
    const int number = text.toInt();
    listSymbolsOf(number);
    // A symbol of another group gives way to the first symbol of the number typed.
    const QString current = tableName(symbol_->currentText());
    if (symbol_->count() > 0 && symbol_->findText(current, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0)
        symbol_->setEditText(symbol_->itemText(0));
    if (const QString system = crystalSystem(number); !system.isEmpty())
        system_->setCurrentIndex(qMax(system_->findText(system), 0));
    linking_ = false;
    checkSymbol();
}

void QcbsWizardSpaceGroupPage::updateSpacegroupName(const QString& text)
{
    if (linking_)
        return;
    const QString name = tableName(text);
    if (name != unknownGroup) {
        linking_ = true;
        const Spacegroup group(name.toStdString());
        if (number_->text().toInt() != group.number()) {
            number_->setText(QString::number(group.number()));
            listSymbolsOf(group.number());
        }
        // Rhombohedral axes are a crystal system of their own in this vocabulary.
        const QString system =
            name.endsWith(QLatin1Char('r')) ? QStringLiteral("rhombohedral") : crystalSystem(group.number());
        system_->setCurrentIndex(qMax(system_->findText(system), 0));
        linking_ = false;
    }
    checkSymbol();
}

void QcbsWizardSpaceGroupPage::updateCellSetting(int)
{
    checkSymbol();
}

void QcbsWizardSpaceGroupPage::inSpacegroupNameEdit(const QString&)
{
    if (!linking_)
        checkSymbol();
}

void QcbsWizardSpaceGroupPage::checkSymbol()
{
    const QString symbol = symbol_->currentText().trimmed();
    const QString symbolName = tableName(symbol);
    const bool disagree = !symbol.isEmpty() && symbolName != unknownGroup && operatorsName_ != unknownGroup &&
                          symbolName != operatorsName_;
    warning_->setText(disagree ? QStringLiteral("Warning: Space group symbol: ") + symbol +
                                     QStringLiteral(" does not agree \nwith the given symmetry operators: ") +
                                     operatorsName_
                               : QString());
    offer_->setText(QStringLiteral("Use %1, the symbol of the operators").arg(operatorsName_));
    offer_->setVisible(disagree);
}

void QcbsWizardSpaceGroupPage::takeOperatorsSymbol()
{
    symbol_->setEditText(operatorsName_);
    updateSpacegroupName(operatorsName_);
}

QString QcbsWizardSpaceGroupPage::warning() const
{
    return warning_->text();
}
