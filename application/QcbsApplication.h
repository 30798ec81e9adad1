#ifndef CIFWARD_QCBSAPPLICATION_H
#define CIFWARD_QCBSAPPLICATION_H

#include <QApplication>
#include <QDate>
#include <QStringList>

class QLabel;
class QcbsMainWindow;

class QcbsApplication : public QApplication {
    Q_OBJECT
public:
    QcbsApplication(int& argc, char** argv);

    // The date this build was meant to be used until; shown in the About box, never enforced.
    QDate validityDate() const { return validity_; }
    static QDate buildValidityDate() { return QDate(2006, 7, 31); }
    static bool buildPeriodExpired() { return false; }
    static bool newerReleaseAvailable() { return false; }

    // The splash screen; any code may post a line on it while it is up.
    static QLabel* splashCreate();
    static void splashMessage(const QString& text);
    static void splashClose();

    // Opens the files named on the command line, the first in `first`; honours single-window mode.
    static void openCommandLineFiles(QcbsMainWindow* first, const QStringList& files);

private:
    QDate validity_;
};

#endif
