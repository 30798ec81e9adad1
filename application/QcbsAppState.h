#ifndef CIFWARD_QCBSAPPSTATE_H
#define CIFWARD_QCBSAPPSTATE_H

#include "CifDictionaryPool.h"
#include "THandle.h"

#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <string>
#include <vector>

class QcbsDictionaryLoader;
class QcbsDictionarySettings;

// What every main window of the process shares: where the program and its help live, the
// dictionaries (read from disk once, however many windows open), and the mandatory item lists.
class QcbsAppState {
public:
    // `program` is the program's own file; its directory anchors every relative search.
    explicit QcbsAppState(const QFileInfo& program);
    ~QcbsAppState();
    QcbsAppState(const QcbsAppState&) = delete;
    QcbsAppState& operator=(const QcbsAppState&) = delete;

    QString programDirectory() const { return programDirectory_; }
    QString documentationDirectory() const { return documentationDirectory_; }
    // The directories tried, in order, and the explanation a help request shows when none held
    // the documentation.
    const QStringList& documentationCandidates() const { return documentationCandidates_; }
    QString documentationMissingText() const;
    static QStringList documentationCandidates(const QString& programDirectory);

    bool showLineNumbers = false;
    bool saveBackupFile = false;
    int lineLengthLimit = 80;
    int lineLengthTolerance = 80;

    // Loads the dictionaries on the first call only; later windows get the same pool.
    void loadDictionaries();
    QcbsDictionaryLoader* dictionaryLoader() const { return loader_.get(); }
    QcbsDictionarySettings* dictionarySettings() const { return settings_.get(); }
    // The enabled dictionaries, which checking uses; an empty pool before loading.
    HCifDictionaryPool activeDictionaries() const;

    std::vector<std::string> mandatoryCrystalItems;
    std::vector<std::string> mandatoryPublicationItems;

private:
    void findDocumentation();

    QString programDirectory_;
    QString documentationDirectory_;
    QStringList documentationCandidates_;
    THandle<QcbsDictionaryLoader> loader_;
    THandle<QcbsDictionarySettings> settings_;
    HCifDictionaryPool emptyPool_;
};

using HQcbsAppState = THandle<QcbsAppState>;

#endif
