#include "QcbsEditDataDialogue.h"

#include "CifError.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <sstream>

namespace {

QString fromStd(const std::string& text)
{
    return QString::fromStdString(text);
}

} // namespace

QcbsEditDataDialogue::QcbsEditDataDialogue(const HCifDataBlock& block, const QString& itemName,
                                           unsigned lineLimit, bool maySet, QWidget* parent)
    : QDialog(parent), itemName_(itemName), blockName_(fromStd(block->name())),
      dictionary_(block->dictionary()), probe_(new CifDataItem(itemName.toStdString(), block->dictionary())),
      lineLimit_(lineLimit)
{
    const std::string name = itemName.toStdString();
    // A column of a loop has a value on every row: one pair cannot stand for it.
    maySet_ = maySet && !block->is_looped(name);
    setObjectName(QStringLiteral("edit data item"));
    setWindowTitle(QStringLiteral("Set data item value"));

    auto* title =
        new QLabel(QStringLiteral("Set <b>") + itemName.toHtmlEscaped() + QStringLiteral(" </b>in block<b>") +
                       QStringLiteral("&nbsp;") + blockName_.toHtmlEscaped() + QStringLiteral("</b>"),
                   this);
    title->setObjectName(QStringLiteral("title"));
    const std::string& dictionaryName = dictionary_->header(name).name;
    auto* header = new QLabel(QStringLiteral("Data item:  <b>") + itemName.toHtmlEscaped() +
                                  QStringLiteral("</b><p>Dictionary:  <b>") +
                                  (dictionaryName.empty() ? QStringLiteral("(not in dictionary)")
                                                          : fromStd(dictionaryName).toHtmlEscaped()) +
                                  QStringLiteral("</b>"),
                              this);
    header->setObjectName(QStringLiteral("header"));

    const CifDictionary::Pairs& enumeration = dictionary_->enumeration(name);
    const QString current = fromStd(block->first_value(name));
    auto* heading = new QLabel(this);
    heading->setObjectName(QStringLiteral("heading"));
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    auto* valueLabel = new QLabel(this);
    QWidget* input = nullptr;
    if (!enumeration.empty()) {
        heading->setText(QStringLiteral("Choose from the list or enter a value"));
        valueLabel->setText(QStringLiteral("Select data item value from enumeration list:"));
        combo_ = new QComboBox(this);
        combo_->setObjectName(QStringLiteral("valueCombo"));
        combo_->setEditable(true);
        combo_->setInsertPolicy(QComboBox::NoInsert);
        combo_->addItem(QStringLiteral("?"));
        for (const auto& value : enumeration)
            combo_->addItem(fromStd(value.first), fromStd(value.second));
        combo_->addItem(QStringLiteral("."));
        for (int i = 1; i < combo_->count() - 1; ++i)
            combo_->setItemData(i, combo_->itemData(i), Qt::ToolTipRole);
        const int match = combo_->findText(current.trimmed(), Qt::MatchFixedString);
        combo_->setCurrentIndex(match >= 0 ? match : 0);
        connect(combo_, &QComboBox::currentTextChanged, this, &QcbsEditDataDialogue::showCheck);
        input = combo_;
    } else {
        heading->setText(QStringLiteral("Enter a value"));
        valueLabel->setText(QStringLiteral("Type data item value:"));
        if (current.contains(QLatin1Char('\n'))) {
            text_ = new QPlainTextEdit(current, this);
            text_->setObjectName(QStringLiteral("valueText"));
            text_->setTabChangesFocus(true);
            connect(text_, &QPlainTextEdit::textChanged, this, &QcbsEditDataDialogue::showCheck);
            input = text_;
        } else {
            line_ = new QLineEdit(current, this);
            line_->setObjectName(QStringLiteral("valueEdit"));
            line_->selectAll();
            connect(line_, &QLineEdit::textChanged, this, &QcbsEditDataDialogue::showCheck);
            input = line_;
        }
    }
    valueLabel->setBuddy(input);
    input->setToolTip(QStringLiteral("The new value of ") + itemName +
                      QStringLiteral("; \"?\" for unknown, \".\" for not applicable"));
    input->setEnabled(maySet_);
    check_ = new QLabel(this);
    check_->setObjectName(QStringLiteral("checkResult"));
    check_->setWordWrap(true);
    check_->setStyleSheet(QStringLiteral("color: #a01010"));

    auto* buttons = new QDialogButtonBox(this);
    if (maySet_) {
        okButton_ = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
        okButton_->setDefault(true);
        okButton_->setToolTip(QStringLiteral("Put the value into the editor"));
        QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
        cancel->setToolTip(QStringLiteral("Leave the value as it is"));
        connect(okButton_, &QPushButton::clicked, this, &QcbsEditDataDialogue::ok);
        connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    } else {
        QPushButton* close = buttons->addButton(QStringLiteral("Close"), QDialogButtonBox::RejectRole);
        close->setDefault(true);
        connect(close, &QPushButton::clicked, this, &QWidget::close);
        if (block->is_looped(name))
            check_->setText(QStringLiteral("This item is a column of a loop: change it in the loop editor."));
    }
    connect(this, &QcbsEditDataDialogue::userDidClose, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(header);
    layout->addSpacing(6);
    layout->addWidget(heading);
    layout->addWidget(valueLabel);
    layout->addWidget(input);
    layout->addWidget(check_);
    layout->addStretch();
    layout->addWidget(buttons);
    setMinimumWidth(440);
    if (maySet_)
        showCheck();
    input->setFocus();
}

QString QcbsEditDataDialogue::value() const
{
    if (combo_)
        return combo_->currentText().trimmed();
    if (text_)
        return text_->toPlainText();
    return line_->text().trimmed();
}

QString QcbsEditDataDialogue::pairText(const HCifDictionary& dictionary, const QString& name,
                                       const QString& value, unsigned lineLimit)
{
    CifDataBlock scratch("data_", -1, dictionary);
    scratch.add_item(name.toStdString())->set_single_value(value.toStdString());
    std::ostringstream out;
    scratch.write(out, lineLimit);
    const std::string text = out.str();
    return fromStd(text.substr(text.find('\n') + 1));
}

void QcbsEditDataDialogue::showCheck()
{
    const QString typed = value();
    if (okButton_) {
        // An empty value would remove the item from the file rather than set it.
        okButton_->setEnabled(!typed.trimmed().isEmpty());
        okButton_->setToolTip(typed.trimmed().isEmpty() ? QStringLiteral("Type a value, or ? for unknown")
                                                        : QStringLiteral("Put the value into the editor"));
    }
    const std::string text = typed.toStdString();
    const int result = probe_->check(text);
    check_->setText(result == 0 ? QString()
                                : fromStd(CifError(cif_check_result_code(result), text, -1).message()));
}

void QcbsEditDataDialogue::ok()
{
    const QString typed = value();
    if (!maySet_ || typed.trimmed().isEmpty())
        return;
    emit setDataItemTextRequest(blockName_, itemName_, pairText(dictionary_, itemName_, typed, lineLimit_));
    accept();
}
