#include "QcbsWizardAuthorPage.h"

#include "CifDataBlock.h"
#include "QcbsContactRecord.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const std::string nameColumn = "_publ_author_name";
const std::string addressColumn = "_publ_author_address";

QString cell(const CifDataBlock& block, const std::string& name, std::size_t row)
{
    HCifDataItem item = block.item(name);
    if (!item || row >= item->value_count())
        return {};
    const QString text = QString::fromStdString(item->value(row));
    return text == QLatin1String("?") ? QString() : text;
}

void splitName(const QString& name, QString& family, QString& given)
{
    const int comma = name.indexOf(QLatin1Char(','));
    family = (comma < 0 ? name : name.left(comma)).trimmed();
    given = comma < 0 ? QString() : name.mid(comma + 1).trimmed();
}
} // namespace

QcbsWizardAuthorPage::QcbsWizardAuthorPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Publication Information...   (page "),
                     QStringLiteral("Enter the names and addresses of the authors"), parent),
      family_(new QLineEdit(this)), given_(new QLineEdit(this)), address_(new QPlainTextEdit(this)),
      position_(new QLabel(this)), previous_(new QPushButton(QStringLiteral("Previous"), this)),
      next_(new QPushButton(QStringLiteral("Next"), this)),
      add_(new QPushButton(QStringLiteral("Add"), this)),
      delete_(new QPushButton(QStringLiteral("Delete"), this))
{
    address_->setTabChangesFocus(true);
    address_->setFixedHeight(address_->fontMetrics().lineSpacing() * 5);
    addRow(QStringLiteral("Family name : "), QString::fromStdString(nameColumn), family_);
    addRow(QStringLiteral("First name(s)\nor initial(s) : "), QString::fromStdString(nameColumn), given_);
    addRow(QStringLiteral("Address : "), QString::fromStdString(addressColumn), address_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(position_);
    buttons->addStretch();
    for (QPushButton* button : {previous_, next_, add_, delete_}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    content()->addLayout(buttons);
    content()->addStretch();
}

QString QcbsWizardAuthorPage::joinName(const QString& family, const QString& given)
{
    return given.isEmpty() ? family : family + QStringLiteral(", ") + given;
}

void QcbsWizardAuthorPage::loadFields(const CifDataBlock& block)
{
    otherColumns_.clear();
    block.loop_names(nameColumn, otherColumns_);
    otherColumns_.erase(std::remove_if(otherColumns_.begin(), otherColumns_.end(),
                                       [](const std::string& n) {
                                           return cif_names_equal(n, nameColumn) ||
                                                  cif_names_equal(n, addressColumn);
                                       }),
                        otherColumns_.end());
    authors_.clear();
    HCifDataItem names = block.item(nameColumn);
    for (std::size_t row = 0; names && row < names->value_count(); ++row) {
        Author author;
        splitName(cell(block, nameColumn, row), author.family, author.given);
        author.address = cell(block, addressColumn, row);
        for (const std::string& column : otherColumns_) {
            const QString value = cell(block, column, row);
            author.others.push_back(value.isEmpty() ? "?" : value.toStdString());
        }
        authors_.push_back(author);
    }
    loaded_ = named();
    // A block without authors starts from the contact author, who is most often one of them.
    if (authors_.empty()) {
        Author author;
        splitName(contact().name, author.family, author.given);
        author.address = contact().address;
        author.others.assign(otherColumns_.size(), "?");
        authors_.push_back(author);
    }
    showAuthor(0);
}

std::vector<QcbsWizardAuthorPage::Author> QcbsWizardAuthorPage::named() const
{
    std::vector<Author> kept;
    for (const Author& author : authors_)
        if (!author.blank())
            kept.push_back(author);
    return kept;
}

void QcbsWizardAuthorPage::storeFields(CifDataBlock& block)
{
    keepShown();
    const std::vector<Author> kept = named();
    if (kept == loaded_)
        return;
    std::vector<std::string> columns{nameColumn, addressColumn};
    columns.insert(columns.end(), otherColumns_.begin(), otherColumns_.end());
    if (kept.empty()) {
        for (const std::string& column : columns)
            block.remove_item(column);
    } else {
        for (const std::string& column : columns)
            block.add_item(column);
        block.make_loop(columns);
        for (const std::string& column : columns)
            block.item(column)->clear_values();
        for (const Author& author : kept) {
            block.item(nameColumn)->add_value(joinName(author.family, author.given).toStdString());
            block.item(addressColumn)
                ->add_value(author.address.isEmpty() ? "?" : author.address.toStdString());
            for (std::size_t i = 0; i < otherColumns_.size(); ++i)
                block.item(otherColumns_[i])->add_value(author.others[i]);
        }
    }
    loaded_ = kept;
}

void QcbsWizardAuthorPage::keepShown()
{
    Author& author = authors_[current_];
    author.family = family_->text().trimmed();
    author.given = given_->text().trimmed();
    author.address = address_->toPlainText().trimmed();
}

void QcbsWizardAuthorPage::showAuthor(int index)
{
    current_ = index;
    const Author& author = authors_[current_];
    family_->setText(author.family);
    given_->setText(author.given);
    address_->setPlainText(author.address);
    position_->setText(QStringLiteral("Author %1 of %2").arg(current_ + 1).arg(authors_.size()));
    previous_->setEnabled(current_ > 0);
    next_->setEnabled(current_ + 1 < authorCount());
}

void QcbsWizardAuthorPage::appendBlank()
{
    Author author;
    author.others.assign(otherColumns_.size(), "?");
    authors_.push_back(author);
    showAuthor(authorCount() - 1);
    family_->setFocus();
}

void QcbsWizardAuthorPage::addAuthor()
{
    keepShown();
    appendBlank();
}

// The page always shows an author, if only a blank one to fill in.
void QcbsWizardAuthorPage::deleteAuthor()
{
    authors_.erase(authors_.begin() + current_);
    if (authors_.empty())
        appendBlank();
    else
        showAuthor(qMin(current_, authorCount() - 1));
}

void QcbsWizardAuthorPage::nextAuthor()
{
    keepShown();
    if (current_ + 1 < authorCount())
        showAuthor(current_ + 1);
}

void QcbsWizardAuthorPage::previousAuthor()
{
    keepShown();
    if (current_ > 0)
        showAuthor(current_ - 1);
}
