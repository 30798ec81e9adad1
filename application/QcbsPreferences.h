#ifndef CIFWARD_QCBSPREFERENCES_H
#define CIFWARD_QCBSPREFERENCES_H

#include <QString>
#include <QStringList>

class QSettings;

// Every persistent preference with its default, as the main windows share them. Each reader and
// writer opens the store afresh, so that all windows and dialogs see one another's changes.
struct QcbsPreferences {
    bool textOnButtons = false;
    int windowHeight = 650;
    int windowWidth = 800;
    int maxConsecError = 4;
    bool reuseWindow = false;
    bool startWithTemplate = false;
    QString templateFilename;
    bool checkMandatoryItems = false;
    QString mandatoryFilename;
    int fontChangeSize = 0;
    bool lineNumbers = false;
    bool saveBackupFile = false;
    // The tolerance has no key of its own: both start from "line length limit" and only the limit
    // is written back.
    int lineLengthLimit = 80;
    int lineLengthTolerance = 80;
    QString contactName, contactAddress, contactPhone, contactFax, contactEmail;
    QStringList recentFiles; // oldest first, at most maxRecentFiles
    QStringList findRecent, replaceRecent;
    bool findCheckCase = false, findCheckWords = false, findForward = true;

    static constexpr int maxRecentFiles = 6;
    // Stored numbers outside these ranges are taken as damage and give the default.
    static constexpr int minLineLengthLimit = 40, maxLineLengthLimit = 2048;
    static constexpr int minTolerance = 0, maxTolerance = 2048;
    static constexpr int minConsecError = 1, maxConsecErrorLimit = 100;
    static constexpr int maxFontChange = 200;
    static constexpr int maxWindowSide = 100000;

    // A missing, empty or unreadable store gives the defaults, and so does each value that is
    // not of its key's type.
    static QcbsPreferences read();
    void write() const;
    // Only the keys that the preferences dialog edits, so that applying it does not overwrite
    // what the find dialogs and the main windows keep for themselves.
    void writeDialogValues() const;
    // Only the search history and options, which the find and replace dialogs keep.
    void writeSearchValues() const;

    static QString key(const char* name);
    // Typed reading of one key: a value that cannot be read as the type gives `fallback`.
    static bool boolValue(const QSettings& settings, const QString& key, bool fallback);
    static int intValue(const QSettings& settings, const QString& key, int fallback, int min, int max);
    static QString stringValue(const QSettings& settings, const QString& key, const QString& fallback = {});
};

#endif
