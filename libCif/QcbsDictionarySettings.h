#ifndef CIFWARD_QCBSDICTIONARYSETTINGS_H
#define CIFWARD_QCBSDICTIONARYSETTINGS_H

#include "CifDictionaryPool.h"

#include <QObject>
#include <QString>

// Which of the loaded dictionaries are in use, remembered in the settings by dictionary name and
// version. The pool of enabled ones is what documents are checked against.
class QcbsDictionarySettings : public QObject {
    Q_OBJECT
public:
    explicit QcbsDictionarySettings(const HCifDictionaryPool& all, QObject* parent = nullptr);

    HCifDictionaryPool settings() const { return enabled_; }
    // Every loaded dictionary, enabled or not.
    HCifDictionaryPool all() const { return all_; }
    bool isEnabled(const HCifConcreteDictionary& dictionary) const;
    // Writes each dictionary's state, when one has changed since the last save.
    void save();

    static QString key(const CifConcreteDictionary& dictionary);
    static const char* groupName() { return "DictionarySettings"; }

public slots:
    void setDictionaryEnabled(HCifConcreteDictionary dictionary, bool enabled);

private:
    HCifDictionaryPool all_;
    HCifDictionaryPool enabled_;
    bool dirty_ = false;
};

#endif
