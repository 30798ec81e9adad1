#ifndef CIFWARD_QCBSDICTIONARYLOADER_H
#define CIFWARD_QCBSDICTIONARYLOADER_H

#include "CifDictionaryPool.h"
#include "CifError.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <vector>

// Finds the "*.dic" files beside the program (and in the install prefix and CIFWARD_DICT_PATH),
// reads each, and keeps those that read without any finding in one pool. Loads only once.
class QcbsDictionaryLoader : public QObject {
    Q_OBJECT
public:
    struct Loaded {
        HCifConcreteDictionary dictionary;
        QString path;
    };
    struct Rejected {
        QString path;
        std::vector<CifError> findings;
    };

    explicit QcbsDictionaryLoader(QObject* parent = nullptr);

    HCifDictionaryPool load(const QString& application_directory);

    // The directories searched for a program in `application_directory`, in order.
    static QStringList searchDirectories(const QString& application_directory);
    // Searches only these directories, in this order, instead.
    void setSearchDirectories(const QStringList& directories);

    const std::vector<Loaded>& loaded() const { return loaded_; }
    const std::vector<Rejected>& rejected() const { return rejected_; }

signals:
    void outputMessageRequest(const QString& text, bool newline);

private:
    void loadFile(const QString& path);

    HCifDictionaryPool pool_;
    bool is_loaded_ = false;
    bool explicit_directories_ = false;
    QStringList directories_;
    std::vector<Loaded> loaded_;
    std::vector<Rejected> rejected_;
};

#endif
