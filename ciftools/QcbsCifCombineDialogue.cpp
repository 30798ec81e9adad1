#include "QcbsCifCombineDialogue.h"

#include "CifMessageTable.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <sstream>

namespace {

enum Column { BlockColumn, ItemsColumn, LineColumn };

} // namespace

QcbsCifCombineDialogue::QcbsCifCombineDialogue(const HCif& target, std::size_t targetIndex,
                                               const HCif& source, const QString& sourceName,
                                               unsigned lineLimit, QWidget* parent)
    : QDialog(parent), target_(target), source_(source), targetIndex_(targetIndex), lineLimit_(lineLimit),
      templateChoice_(new QRadioButton(
          QStringLiteral("Blocks of the &template ") + QFileInfo(sourceName).fileName(), this)),
      fileChoice_(new QRadioButton(QStringLiteral("Other blocks of this &file"), this)),
      table_(new QTableWidget(this)),
      replace_(new QCheckBox(QStringLiteral("&Replace existing values"), this)), warning_(new QLabel(this))
{
    setObjectName(QStringLiteral("merge"));
    setWindowTitle(QStringLiteral("Cif Merge Dialog"));
    const bool hasTarget = target_ && targetIndex_ < target_->block_count();
    auto* intro = new QLabel(
        hasTarget ? QStringLiteral("Merge into block <b>%1</b> the data of the blocks ticked below.")
                        .arg(QString::fromStdString(target_->block(targetIndex_).name()).toHtmlEscaped())
                  : QStringLiteral("The cursor is in no data block: there is nothing to merge into."),
        this);
    intro->setWordWrap(true);
    templateChoice_->setObjectName(QStringLiteral("templateChoice"));
    templateChoice_->setToolTip(sourceName);
    templateChoice_->setChecked(true);
    fileChoice_->setObjectName(QStringLiteral("fileChoice"));
    fileChoice_->setToolTip(QStringLiteral("Merge data from another block of the file being edited"));

    table_->setObjectName(QStringLiteral("blocks"));
    table_->setColumnCount(3);
    table_->setHorizontalHeaderLabels(
        {QStringLiteral("Block"), QStringLiteral("Data items"), QStringLiteral("Line")});
    table_->horizontalHeader()->setSectionResizeMode(BlockColumn, QHeaderView::Stretch);
    table_->verticalHeader()->hide();
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setToolTip(
        QStringLiteral("Tick the blocks whose data go into the block (Space ticks the current row)"));

    replace_->setObjectName(QStringLiteral("replace"));
    replace_->setToolTip(
        QStringLiteral("Ticked, values from the chosen blocks take the place of the block's own; "
                       "otherwise the block keeps what it has, and a loop that shares a name "
                       "with one of its own is left out"));
    warning_->setObjectName(QStringLiteral("sourceWarning"));
    warning_->setWordWrap(true);
    warning_->setStyleSheet(QStringLiteral("color: #a01010"));

    auto* buttons = new QDialogButtonBox(this);
    okButton_ = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    okButton_->setDefault(true);
    okButton_->setToolTip(QStringLiteral("Merge, and put the block back into the editor"));
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setToolTip(QStringLiteral("Close, leaving the file as it was"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(templateChoice_);
    layout->addWidget(fileChoice_);
    layout->addWidget(table_, 1);
    layout->addWidget(warning_);
    layout->addWidget(replace_);
    layout->addWidget(buttons);
    resize(520, 400);

    connect(templateChoice_, &QRadioButton::toggled, this, &QcbsCifCombineDialogue::useTemplate);
    connect(table_, &QTableWidget::itemChanged, this, &QcbsCifCombineDialogue::updateOkButton);
    connect(okButton_, &QPushButton::clicked, this, &QcbsCifCombineDialogue::ok);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    fillTable();
    table_->setFocus();
}

const HCif& QcbsCifCombineDialogue::currentSource() const
{
    return fromTemplate_ ? source_ : target_;
}

void QcbsCifCombineDialogue::useTemplate(bool fromTemplate)
{
    fromTemplate_ = fromTemplate;
    fileChoice_->setChecked(!fromTemplate);
    fillTable();
}

void QcbsCifCombineDialogue::fillTable()
{
    const QSignalBlocker blocker(table_);
    table_->clearContents();
    const HCif& source = currentSource();
    const std::size_t count = source ? source->block_count() : 0;
    table_->setRowCount(int(count));
    for (std::size_t i = 0; i < count; ++i) {
        const CifDataBlock& block = source->block(i);
        auto* name = new QTableWidgetItem(QString::fromStdString(block.name()));
        // A block cannot be merged into itself; a template of one block is what the user means.
        const bool itself = !fromTemplate_ && i == targetIndex_;
        name->setFlags(itself ? Qt::NoItemFlags
                              : Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        name->setCheckState(fromTemplate_ && count == 1 ? Qt::Checked : Qt::Unchecked);
        if (itself)
            name->setToolTip(QStringLiteral("The block being merged into"));
        table_->setItem(int(i), BlockColumn, name);
        auto* items = new QTableWidgetItem(QString::number(block.item_count()));
        items->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        table_->setItem(int(i), ItemsColumn, items);
        auto* line = new QTableWidgetItem(QString::number(block.line()));
        line->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        table_->setItem(int(i), LineColumn, line);
    }
    table_->setCurrentCell(0, BlockColumn);

    QString warning;
    const std::size_t errors =
        count && fromTemplate_ ? source->errors()->count_of_severity(CifErrorSeverity) : 0;
    if (count == 0) {
        warning = fromTemplate_ ? QStringLiteral("The template holds no data block.")
                                : QStringLiteral("The file holds no other data block.");
    } else if (errors > 0) {
        const auto first = std::find_if(source->errors()->begin(), source->errors()->end(),
                                        [](const CifError& e) { return e.severity() == CifErrorSeverity; });
        warning = QStringLiteral("The template has %1 error%2, the first: %3. Its blocks are merged as they "
                                 "were read.")
                      .arg(errors)
                      .arg(errors == 1 ? "" : "s")
                      .arg(QString::fromStdString(first->text()));
    }
    warning_->setText(warning);
    warning_->setVisible(!warning.isEmpty());
    updateOkButton();
}

void QcbsCifCombineDialogue::updateOkButton()
{
    bool any = false;
    for (int row = 0; row < table_->rowCount(); ++row)
        any = any || table_->item(row, BlockColumn)->checkState() == Qt::Checked;
    okButton_->setEnabled(any && target_ && targetIndex_ < target_->block_count());
}

QString QcbsCifCombineDialogue::merge()
{
    if (!target_ || targetIndex_ >= target_->block_count())
        return QString();
    CifDataBlock& block = target_->block(targetIndex_);
    const bool keepExisting = !replace_->isChecked();
    const HCif& source = currentSource();
    for (int row = 0; row < table_->rowCount(); ++row)
        if (table_->item(row, BlockColumn)->checkState() == Qt::Checked)
            block.copy_block(source->block(std::size_t(row)), keepExisting);
    // A comment that closed the file would otherwise end up in the middle of it.
    for (const HCifDataItem& item : block)
        item->set_comment(3, std::string());
    std::ostringstream out;
    block.write(out, lineLimit_);
    // The comments before the heading stay in the editor, above the lines that are replaced.
    return QString::fromStdString(out.str().substr(block.comment(0).size()));
}

void QcbsCifCombineDialogue::ok()
{
    if (!okButton_->isEnabled())
        return;
    emit blockUpdated(merge());
    accept();
}
