#include "QcbsDictionaryCheckBox.h"

QcbsDictionaryCheckBox::QcbsDictionaryCheckBox(const HCifConcreteDictionary& dictionary, QWidget* parent)
    : QCheckBox(parent), dictionary_(dictionary)
{
    // Queued connections carry the handle as well as direct ones.
    qRegisterMetaType<HCifConcreteDictionary>();
    connect(this, &QCheckBox::toggled, this, &QcbsDictionaryCheckBox::forwardToggle);
}

void QcbsDictionaryCheckBox::forwardToggle(bool checked)
{
    emit setDictionaryEnabled(dictionary_, checked);
}
