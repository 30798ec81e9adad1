#include "QcbsWizardDiffractionPage.h"

#include "CifDataBlock.h"

#include <QComboBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {
const QString sourceName = QStringLiteral("_diffrn_source");
const QString olderSourceName = QStringLiteral("_diffrn_radiation_source");
} // namespace

QcbsWizardDiffractionPage::QcbsWizardDiffractionPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Diffraction Information...   (page "),
                     QStringLiteral("Enter details of the diffraction experiment for this structure"), parent)
{
    auto* probe = new QComboBox(this);
    probe->addItems({QStringLiteral("?"), QStringLiteral("x-ray"), QStringLiteral("neutron"),
                     QStringLiteral("electron"), QStringLiteral("gamma")});
    addField(QStringLiteral("Radiation Probe:"), QStringLiteral("_diffrn_radiation_probe"), probe);
    addField(QStringLiteral("Radiation Type:"), QStringLiteral("_diffrn_radiation_type"),
             new QLineEdit(this));
    addField(QStringLiteral("Radiation Wavelength:"), QStringLiteral("_diffrn_radiation_wavelength"),
             new QLineEdit(this));
    source_ = &addField(QStringLiteral("Radiation Source Class:"), sourceName, new QLineEdit(this));
    addField(QStringLiteral("Radiation Source Type:"), QStringLiteral("_diffrn_source_type"),
             new QLineEdit(this));
    content()->addStretch();
}

void QcbsWizardDiffractionPage::loadFields(const CifDataBlock& block)
{
    QcbsWizardPage::loadFields(block);
    if (!block.item(sourceName.toStdString()))
        source_->load(block, olderSourceName);
}

void QcbsWizardDiffractionPage::storeFields(CifDataBlock& block)
{
    const bool moved = source_->changed() && !block.item(sourceName.toStdString());
    QcbsWizardPage::storeFields(block);
    if (moved && !block.is_looped(olderSourceName.toStdString()))
        block.remove_item(olderSourceName.toStdString());
}
