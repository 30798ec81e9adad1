#include "QcbsDictionarySettings.h"

#include <QSettings>
#include <algorithm>

QString QcbsDictionarySettings::key(const CifConcreteDictionary& dictionary)
{
    const CifDictionaryHeader& header = dictionary.header();
    return QStringLiteral("/Cifward/dictionaries/") + QString::fromStdString(header.name) +
           QString::fromStdString(header.version);
}

QcbsDictionarySettings::QcbsDictionarySettings(const HCifDictionaryPool& all, QObject* parent)
    : QObject(parent), all_(all), enabled_(new CifDictionaryPool)
{
    QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
    for (const HCifConcreteDictionary& dictionary : *all_)
        if (settings.value(key(*dictionary), true).toBool())
            enabled_->add(dictionary);
}

bool QcbsDictionarySettings::isEnabled(const HCifConcreteDictionary& dictionary) const
{
    return std::find(enabled_->begin(), enabled_->end(), dictionary) != enabled_->end();
}

void QcbsDictionarySettings::setDictionaryEnabled(HCifConcreteDictionary dictionary, bool enabled)
{
    // Enabling puts the dictionary last, so toggling one off and on changes its precedence.
    if (enabled && !isEnabled(dictionary))
        enabled_->add(dictionary);
    else if (!enabled)
        enabled_->remove(dictionary);
    dirty_ = true;
}

void QcbsDictionarySettings::save()
{
    if (!dirty_)
        return;
    QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
    for (const HCifConcreteDictionary& dictionary : *all_)
        settings.setValue(key(*dictionary), isEnabled(dictionary));
    dirty_ = false;
}
