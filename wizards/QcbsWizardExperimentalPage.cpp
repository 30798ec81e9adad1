#include "QcbsWizardExperimentalPage.h"

#include <QLineEdit>
#include <QVBoxLayout>

QcbsWizardExperimentalPage::QcbsWizardExperimentalPage(QWidget* parent)
    : QcbsWizardPage(QStringLiteral("Physical and Chemical Information...   (page "),
                     QStringLiteral("Enter details of the crystal and of the conditions of the experiment"),
                     parent)
{
    const struct {
        const char* label;
        const char* name;
    } rows[] = {
        {"Recrystallization Method:", "_exptl_crystal_recrystallization_method"},
        {"Melting Point (K):", "_chemical_melting_point"},
        {"Crystal Habit:", "_exptl_crystal_description"},
        {"Crystal Colour:", "_exptl_crystal_colour"},
        {"Diffraction Temperature (K):", "_diffrn_ambient_temperature"},
        {"Diffraction Pressure (kPa):", "_diffrn_ambient_pressure"},
    };
    for (const auto& row : rows)
        addField(QString::fromLatin1(row.label), QString::fromLatin1(row.name), new QLineEdit(this));
    content()->addStretch();
}
