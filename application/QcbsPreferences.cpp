#include "QcbsPreferences.h"

#include <QSettings>

namespace {

// Far more than any history the dialogs keep, so that a damaged store cannot make reading long.
constexpr int maxHistoryEntries = 100;

QSettings openStore()
{
    return QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
}

QStringList readHistory(const QSettings& settings, const QString& root)
{
    QStringList entries;
    for (int n = 1; n <= maxHistoryEntries; ++n) {
        const QString entryKey = root + QLatin1Char('/') + QString::number(n);
        if (!settings.contains(entryKey))
            break;
        const QString entry = QcbsPreferences::stringValue(settings, entryKey);
        if (!entry.isEmpty())
            entries.append(entry);
    }
    return entries;
}

// The bare key holds the whole list as well: readers of the older form test it for presence.
void writeHistory(QSettings& settings, const QString& root, const QStringList& entries)
{
    settings.remove(root);
    settings.setValue(root, entries);
    for (int n = 0; n < entries.size(); ++n)
        settings.setValue(root + QLatin1Char('/') + QString::number(n + 1), entries.at(n));
}

} // namespace

QString QcbsPreferences::key(const char* name)
{
    return QStringLiteral("/Cifward/") + QLatin1String(name);
}

bool QcbsPreferences::boolValue(const QSettings& settings, const QString& key, bool fallback)
{
    const QVariant value = settings.value(key);
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong: {
        const qlonglong number = value.toLongLong();
        return number == 0 || number == 1 ? number == 1 : fallback;
    }
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        const QString text = value.toString().trimmed().toLower();
        if (text == QLatin1String("true") || text == QLatin1String("1"))
            return true;
        if (text == QLatin1String("false") || text == QLatin1String("0"))
            return false;
        return fallback;
    }
    default:
        return fallback;
    }
}

int QcbsPreferences::intValue(const QSettings& settings, const QString& key, int fallback, int min, int max)
{
    const QVariant value = settings.value(key);
    bool ok = false;
    qlonglong number = 0;
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        number = value.toLongLong(&ok);
        break;
    case QMetaType::QString:
    case QMetaType::QByteArray:
        number = value.toString().trimmed().toLongLong(&ok);
        break;
    default:
        break;
    }
    return ok && number >= min && number <= max ? int(number) : fallback;
}

QString QcbsPreferences::stringValue(const QSettings& settings, const QString& key, const QString& fallback)
{
    const QVariant value = settings.value(key);
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return value.toString();
    // An edited ini file splits an unquoted text at its commas.
    case QMetaType::QStringList:
        return value.toStringList().join(QStringLiteral(", "));
    default:
        return fallback;
    }
}

QcbsPreferences QcbsPreferences::read()
{
    const QSettings settings = openStore();
    const QcbsPreferences defaults;
    QcbsPreferences p;
    p.textOnButtons = boolValue(settings, key("text on buttons"), defaults.textOnButtons);
    p.windowHeight = intValue(settings, key("window height"), defaults.windowHeight, 1, maxWindowSide);
    p.windowWidth = intValue(settings, key("window width"), defaults.windowWidth, 1, maxWindowSide);
    p.maxConsecError = intValue(settings, key("max consec error"), defaults.maxConsecError, minConsecError,
                                maxConsecErrorLimit);
    p.reuseWindow = boolValue(settings, key("reuse window"), defaults.reuseWindow);
    p.startWithTemplate = boolValue(settings, key("start with template"), defaults.startWithTemplate);
    p.templateFilename = stringValue(settings, key("template filename"));
    p.checkMandatoryItems = boolValue(settings, key("check mandatory items"), defaults.checkMandatoryItems);
    p.mandatoryFilename = stringValue(settings, key("mandatory filename"));
    p.fontChangeSize =
        intValue(settings, key("font changesize"), defaults.fontChangeSize, -maxFontChange, maxFontChange);
    p.lineNumbers = boolValue(settings, key("line numbers"), defaults.lineNumbers);
    p.saveBackupFile = boolValue(settings, key("save backup file"), defaults.saveBackupFile);
    p.lineLengthLimit = intValue(settings, key("line length limit"), defaults.lineLengthLimit,
                                 minLineLengthLimit, maxLineLengthLimit);
    p.lineLengthTolerance = p.lineLengthLimit;
    p.contactName = stringValue(settings, key("contact name"));
    p.contactAddress = stringValue(settings, key("contact address"));
    p.contactPhone = stringValue(settings, key("contact phone"));
    p.contactFax = stringValue(settings, key("contact fax"));
    p.contactEmail = stringValue(settings, key("contact email"));
    for (int n = 1; n <= maxRecentFiles; ++n) {
        const QString path = stringValue(settings, key("recent files/") + QString::number(n));
        if (!path.isEmpty())
            p.recentFiles.append(path);
    }
    p.findRecent = readHistory(settings, key("find recent"));
    p.replaceRecent = readHistory(settings, key("replace recent"));
    p.findCheckCase = boolValue(settings, key("find/checkcase"), defaults.findCheckCase);
    p.findCheckWords = boolValue(settings, key("find/checkwords"), defaults.findCheckWords);
    p.findForward = boolValue(settings, key("find/radioForward"), defaults.findForward);
    return p;
}

void QcbsPreferences::writeDialogValues() const
{
    QSettings settings = openStore();
    settings.setValue(key("text on buttons"), textOnButtons);
    settings.setValue(key("max consec error"), maxConsecError);
    settings.setValue(key("reuse window"), reuseWindow);
    settings.setValue(key("start with template"), startWithTemplate);
    settings.setValue(key("template filename"), templateFilename);
    settings.setValue(key("check mandatory items"), checkMandatoryItems);
    settings.setValue(key("mandatory filename"), mandatoryFilename);
    settings.setValue(key("line numbers"), lineNumbers);
    settings.setValue(key("save backup file"), saveBackupFile);
    settings.setValue(key("line length limit"), lineLengthLimit);
    settings.setValue(key("contact name"), contactName);
    settings.setValue(key("contact address"), contactAddress);
    settings.setValue(key("contact phone"), contactPhone);
    settings.setValue(key("contact fax"), contactFax);
    settings.setValue(key("contact email"), contactEmail);
}

void QcbsPreferences::write() const
{
    writeDialogValues();
    QSettings settings = openStore();
    settings.setValue(key("window height"), windowHeight);
    settings.setValue(key("window width"), windowWidth);
    settings.setValue(key("font changesize"), fontChangeSize);
    settings.remove(key("recent files"));
    const int firstKept = qMax(0, int(recentFiles.size()) - maxRecentFiles);
    for (int n = firstKept; n < recentFiles.size(); ++n)
        settings.setValue(key("recent files/") + QString::number(n - firstKept + 1), recentFiles.at(n));
    writeSearchValues();
}

void QcbsPreferences::writeSearchValues() const
{
    QSettings settings = openStore();
    writeHistory(settings, key("find recent"), findRecent);
    writeHistory(settings, key("replace recent"), replaceRecent);
    settings.setValue(key("find/checkcase"), findCheckCase);
    settings.setValue(key("find/checkwords"), findCheckWords);
    settings.setValue(key("find/radioForward"), findForward);
}
