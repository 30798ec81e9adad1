#include "QcbsWizardField.h"

#include "CifDataBlock.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace {
const QString unknown = QStringLiteral("?");
}

QcbsWizardField::QcbsWizardField(const QString& dataName, QWidget* entry) : dataName_(dataName), entry_(entry)
{
}

QString QcbsWizardField::text() const
{
    if (auto* line = qobject_cast<QLineEdit*>(entry_))
        return line->text().trimmed();
    if (auto* box = qobject_cast<QPlainTextEdit*>(entry_))
        return box->toPlainText().trimmed();
    auto* choice = qobject_cast<QComboBox*>(entry_);
    const QString chosen = choice->currentText().trimmed();
    return chosen == unknown ? QString() : chosen;
}

void QcbsWizardField::setText(const QString& text)
{
    if (auto* line = qobject_cast<QLineEdit*>(entry_)) {
        line->setText(text);
    } else if (auto* box = qobject_cast<QPlainTextEdit*>(entry_)) {
        box->setPlainText(text);
    } else {
        auto* choice = qobject_cast<QComboBox*>(entry_);
        const int row = choice->findText(text, Qt::MatchFixedString);
        if (row >= 0 || !choice->isEditable())
            choice->setCurrentIndex(qMax(row, 0));
        else
            choice->setEditText(text);
    }
}

void QcbsWizardField::load(const CifDataBlock& block, const QString& from)
{
    const QString name = from.isEmpty() ? dataName_ : from;
    looped_ = block.is_looped(name.toStdString());
    setText(value(block, name));
    // A choice may not hold the file's value; remember what it shows, so that showing it is no
    // change.
    loaded_ = text();
    entry_->setEnabled(!looped_);
    entry_->setToolTip(
        looped_ ? QStringLiteral("%1 is looped in this block: edit it in the loop editor.").arg(name)
                : QString());
}

void QcbsWizardField::store(CifDataBlock& block) const
{
    if (looped_ || !changed())
        return;
    const QString now = text();
    setValue(block, dataName_, now.isEmpty() ? unknown : now);
}

QString QcbsWizardField::value(const CifDataBlock& block, const QString& name)
{
    // A text field keeps the line end after its opening semicolon; the user sees the text.
    const QString text = QString::fromStdString(block.first_value(name.toStdString())).trimmed();
    return text == unknown ? QString() : text;
}

void QcbsWizardField::setValue(CifDataBlock& block, const QString& name, const QString& value)
{
    block.add_item(name.toStdString())->set_single_value(value.toStdString());
}
