#ifndef CIFWARD_ISOLATEDSETTINGS_H
#define CIFWARD_ISOLATEDSETTINGS_H

#include <QSettings>
#include <QString>
#include <QTemporaryDir>

// Points every QSettings store of this process at a fresh temporary directory, so that a test,
// a benchmark or a screenshot run never reads or writes the user's own settings, and starts it empty.
class IsolatedSettings {
public:
    IsolatedSettings()
    {
        for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
            for (QSettings::Scope scope : {QSettings::UserScope, QSettings::SystemScope})
                QSettings::setPath(format, scope, dir_.path());
        clear();
    }
    void clear() { QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward")).clear(); }
    QString path() const { return dir_.path(); }

private:
    QTemporaryDir dir_;
};

#endif
