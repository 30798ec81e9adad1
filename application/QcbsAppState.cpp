#include "QcbsAppState.h"

#include "Logger.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsDictionarySettings.h"

#include <QDir>

QcbsAppState::QcbsAppState(const QFileInfo& program)
    : programDirectory_(program.absolutePath()), loader_(new QcbsDictionaryLoader),
      emptyPool_(new CifDictionaryPool)
{
    findDocumentation();
}

QcbsAppState::~QcbsAppState() = default;

QStringList QcbsAppState::documentationCandidates(const QString& programDirectory)
{
    QStringList candidates;
    for (const char* relative : {"/docs", "/../../docs", "/Documentation/Cifward", "/../../distrib/docs",
                                 "/../distrib/docs", "/../Resources/docs", "/../share/cifward/docs"})
        candidates << QDir::cleanPath(programDirectory + QLatin1String(relative));
    return candidates;
}

void QcbsAppState::findDocumentation()
{
    documentationCandidates_ = documentationCandidates(programDirectory_);
    for (const QString& candidate : documentationCandidates_) {
        logDebug(1, "main - Searching for documentation in: %s", qPrintable(candidate));
        if (QFileInfo::exists(candidate + QStringLiteral("/Cifward.html"))) {
            documentationDirectory_ = candidate;
            logDebug(1, "main - Documentation found in: %s", qPrintable(candidate));
            return;
        }
    }
}

QString QcbsAppState::documentationMissingText() const
{
    return QStringLiteral("Could not find the Cifward Help documentation in any of:\n\n") +
           documentationCandidates_.join(QLatin1Char('\n'));
}

void QcbsAppState::loadDictionaries()
{
    if (settings_)
        return;
    const HCifDictionaryPool all = loader_->load(programDirectory_);
    settings_ = THandle<QcbsDictionarySettings>(new QcbsDictionarySettings(all));
}

HCifDictionaryPool QcbsAppState::activeDictionaries() const
{
    return settings_ ? settings_->settings() : emptyPool_;
}
