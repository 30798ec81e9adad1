#include "QcbsWizard.h"

#include "QcbsDataItemInfo.h"
#include "QcbsWizardErrorPage.h"
#include "QcbsWizardFinishPage.h"
#include "QcbsWizardIntroPage.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

QcbsWizard::QcbsWizard(const HCifDictionaryPool& pool, const CifDataBlock* block,
                       const HCifErrorList& findings, const QcbsContactRecord& contact,
                       const QString& newBlockName, QWidget* parent)
    : QWizard(parent), cif_(new Cif(pool)), pool_(pool),
      findings_(findings ? findings : HCifErrorList(new CifErrorList)), contact_(contact),
      withoutBlock_(block == nullptr)
{
    const std::string name = block ? block->name() : "data_" + newBlockName.toStdString();
    block_ = cif_->add_block(name, cif_->end());
    if (block) {
        block_->copy_comments(*block);
        // What stands above the heading lies outside the lines that the text will replace.
        block_->set_comment(0, {});
        block_->copy_block(*block, false);
    }
    // Room for the journal list and the longer labels without scrolling.
    resize(720, 540);
    connect(this, &QWizard::currentIdChanged, this, &QcbsWizard::pageChanged);
}

HCifErrorList QcbsWizard::blockFindings(const Cif& cif, std::size_t index)
{
    HCifErrorList found(new CifErrorList);
    // What comes before the first heading (a header comment too long, say) belongs to the first.
    const std::int32_t first = index == 0 ? INT32_MIN : cif.block(index).line();
    std::int32_t next = index + 1 < cif.block_count() ? cif.block(index + 1).line() : INT32_MAX;
    if (next <= first) // a block that the reader made itself has no line
        next = INT32_MAX;
    for (const CifError& finding : *cif.errors())
        if (finding.line < 0 || (finding.line >= first && finding.line < next))
            found->add(finding);
    return found;
}

QString QcbsWizard::blockText() const
{
    std::ostringstream out;
    block_->write(out, lineLimit_);
    return QString::fromStdString(out.str());
}

QcbsWizardPage* QcbsWizard::currentWizardPage() const
{
    return wizardPage(currentId());
}

QcbsWizardPage* QcbsWizard::wizardPage(int id) const
{
    return qobject_cast<QcbsWizardPage*>(page(id));
}

int QcbsWizard::addWizardPage(QcbsWizardPage* page)
{
    connect(page, &QcbsWizardPage::pathChanged, this, &QcbsWizard::updatePageTitles);
    connect(page, &QcbsWizardPage::dataItemHelpRequested, this, &QcbsWizard::dataItemHelp);
    return addPage(page);
}

void QcbsWizard::addIntroPage()
{
    intro_ = new QcbsWizardIntroPage(withoutBlock_);
    addWizardPage(intro_);
    if (withoutBlock_) {
        connect(intro_->browseButton(), &QPushButton::clicked, this, &QcbsWizard::filebrowse);
        connect(intro_->fileEdit(), &QLineEdit::textChanged, this, &QcbsWizard::filechanged);
    }
}

void QcbsWizard::addErrorPage()
{
    addWizardPage(new QcbsWizardErrorPage);
}

void QcbsWizard::addFinishPage()
{
    addWizardPage(new QcbsWizardFinishPage);
}

// Each page is numbered along the way the wizard will now take, which a choice on a page may
// change.
void QcbsWizard::updatePageTitles()
{
    QList<int> path;
    for (int id = startId(); id != -1 && !path.contains(id); id = page(id)->nextId())
        path << id;
    for (int i = 0; i < path.size(); ++i)
        if (QcbsWizardPage* on = wizardPage(path[i]))
            on->setPosition(i + 1, path.size());
}

void QcbsWizard::pageChanged(int id)
{
    if (QcbsWizardPage* left = wizardPage(shownId_))
        left->storeFields(*block_);
    shownId_ = id;
    if (QcbsWizardPage* shown = wizardPage(id))
        shown->loadFields(*block_);
    updatePageTitles();
}

void QcbsWizard::accept()
{
    if (QcbsWizardPage* shown = wizardPage(shownId_))
        shown->storeFields(*block_);
    shownId_ = -1;
    emit blockUpdated(blockText());
    QWizard::accept();
}

// The help is a window of the wizard's own, so that it can be read beside the page.
void QcbsWizard::dataItemHelp(const QString& name)
{
    (new QcbsDataItemInfo(name, pool_, helpDirectory_, this))->show();
}

void QcbsWizard::filebrowse()
{
    const QString path =
        QFileDialog::getOpenFileName(this, QStringLiteral("Choose a CIF"), intro_->fileEdit()->text(),
                                     QStringLiteral("CIF files only (*.cif);;All files (*.*)"));
    if (!path.isEmpty())
        intro_->fileEdit()->setText(path);
}

bool QcbsWizard::imported(const std::string& name) const
{
    const QString item = QString::fromStdString(name);
    for (const QString& category : importedCategories_)
        if (item.startsWith(QLatin1Char('_') + category + QLatin1Char('_'), Qt::CaseInsensitive))
            return true;
    return false;
}

// The block starts again, empty, each time the file line changes, and takes the items of the
// file's first block when the line names a CIF, so that nothing of an earlier choice stays.
void QcbsWizard::filechanged(const QString& path)
{
    const std::string name = block_->name();
    cif_ = HCif(new Cif(pool_));
    block_ = cif_->add_block(name, cif_->end());
    findings_ = HCifErrorList(new CifErrorList);
    if (!QFileInfo(path).isFile()) {
        intro_->setFileStatus(path.isEmpty() ? QString() : QStringLiteral("No such file."));
        return;
    }
    std::ifstream stream(path.toStdString(), std::ios::binary);
    if (!stream) {
        intro_->setFileStatus(QStringLiteral("Could not open the file."));
        return;
    }
    HCif source(new Cif(pool_));
    source->read(stream, lineLimit_);
    // The source document goes at the end of this function; its findings stay with the wizard.
    findings_ = source->errors();
    if (source->block_count() == 0) {
        intro_->setFileStatus(QStringLiteral("The file holds no data block."));
        return;
    }
    const CifDataBlock& from = source->block(0);
    std::set<std::string, CifNameLess> done;
    int taken = 0;
    for (const HCifDataItem& item : from) {
        if (done.count(item->name()) || !imported(item->name()))
            continue;
        std::vector<std::string> names;
        if (item->is_looped())
            from.loop_names(item->name(), names);
        if (names.empty())
            names.push_back(item->name());
        names.erase(
            std::remove_if(names.begin(), names.end(), [this](const std::string& n) { return !imported(n); }),
            names.end());
        if (item->is_looped())
            block_->copy_loop(names, from, false);
        else
            block_->copy_item(item->name(), from, false);
        done.insert(names.begin(), names.end());
        taken += static_cast<int>(names.size());
    }
    intro_->setFileStatus(QStringLiteral("%1 data item%2 taken from %3.")
                              .arg(taken)
                              .arg(taken == 1 ? QString() : QStringLiteral("s"))
                              .arg(QString::fromStdString(from.name())));
}
