#include "QcbsDictionaryLoader.h"

#include "Logger.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <fstream>

QcbsDictionaryLoader::QcbsDictionaryLoader(QObject* parent) : QObject(parent), pool_(new CifDictionaryPool)
{
}

QStringList QcbsDictionaryLoader::searchDirectories(const QString& application_directory)
{
    QStringList directories;
    for (const char* relative : {"/dict", "/../../dict", "/../Resources/dict",
                                 "/../../../libCif/dictionaries", "/../../libCif/dictionaries"})
        directories << application_directory + relative;
    // An installed program finds the dictionaries in the data directory of its prefix.
    directories << QDir::cleanPath(application_directory + QStringLiteral("/" CIFWARD_DICT_DIR_FROM_PROGRAM));
    const QString extra = qEnvironmentVariable("CIFWARD_DICT_PATH");
    for (const QString& directory : extra.split(QLatin1Char(':'), Qt::SkipEmptyParts))
        directories << directory;
    return directories;
}

void QcbsDictionaryLoader::setSearchDirectories(const QStringList& directories)
{
    directories_ = directories;
    explicit_directories_ = true;
}

HCifDictionaryPool QcbsDictionaryLoader::load(const QString& application_directory)
{
    if (is_loaded_)
        return pool_;
    const QStringList directories =
        explicit_directories_ ? directories_ : searchDirectories(application_directory);
    // Several of the relative paths can name one directory; each is read once.
    QSet<QString> searched;
    for (const QString& directory : directories) {
        logDebug(1, "QcbsDictionaryLoader - Searching for dictionaries in: %s", qPrintable(directory));
        const QDir dir(directory);
        if (!dir.exists())
            continue;
        const QString canonical = dir.canonicalPath();
        if (searched.contains(canonical))
            continue;
        searched.insert(canonical);
        const QStringList files =
            dir.entryList(QStringList{QStringLiteral("*.dic")}, QDir::Files | QDir::Readable, QDir::Name);
        for (const QString& file : files)
            loadFile(dir.filePath(file));
    }
    is_loaded_ = true;
    return pool_;
}

void QcbsDictionaryLoader::loadFile(const QString& path)
{
    logDebug(1, "QcbsDictionaryLoader - Dictionary found in: %s", qPrintable(path));
    std::ifstream stream(QFile::encodeName(path).constData(), std::ios::binary);
    HCifConcreteDictionary dictionary(new CifConcreteDictionary);
    HCifErrorList errors(new CifErrorList);
    dictionary->read(stream, errors);
    if (!errors->is_empty()) {
        // Any finding, a warning as much as an error, rejects the whole file.
        emit outputMessageRequest(QStringLiteral("Errors loading dictionary: ") + path, true);
        Rejected rejected{path, {}};
        for (const CifError& finding : *errors) {
            emit outputMessageRequest(QString::fromStdString(finding.text()), true);
            rejected.findings.push_back(finding);
        }
        rejected_.push_back(std::move(rejected));
        return;
    }
    emit outputMessageRequest(QStringLiteral("Loaded dictionary: ") + path, true);
    pool_->add(dictionary);
    loaded_.push_back({dictionary, path});
}
