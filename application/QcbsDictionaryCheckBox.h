#ifndef CIFWARD_QCBSDICTIONARYCHECKBOX_H
#define CIFWARD_QCBSDICTIONARYCHECKBOX_H

#include "CifConcreteDictionary.h"

#include <QCheckBox>
#include <QMetaType>

// A check box that stands for one dictionary, so that a list of them can tell which dictionary
// the user switched on or off.
class QcbsDictionaryCheckBox : public QCheckBox {
    Q_OBJECT
public:
    QcbsDictionaryCheckBox(const HCifConcreteDictionary& dictionary, QWidget* parent = nullptr);

    HCifConcreteDictionary dictionary() const { return dictionary_; }

signals:
    void setDictionaryEnabled(HCifConcreteDictionary dictionary, bool enabled);

private slots:
    void forwardToggle(bool checked);

private:
    HCifConcreteDictionary dictionary_;
};

Q_DECLARE_METATYPE(HCifConcreteDictionary)

#endif
