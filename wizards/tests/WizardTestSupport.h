#ifndef CIFWARD_WIZARDTESTSUPPORT_H
#define CIFWARD_WIZARDTESTSUPPORT_H

#include "QcbsWizard.h"
#include "QcbsWizardPage.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>

// Runs a script on the wizard that a main window opens modally, once it is on screen, for as
// long as the object lives: made before the call that opens the wizard, it ends with the scope
// around that call. A wizard the script leaves open is cancelled, so that a failed step cannot
// hang the run.
class WizardScript {
public:
    template <class Act> explicit WizardScript(Act act)
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, act] {
            auto* wizard = qobject_cast<QcbsWizard*>(QApplication::activeModalWidget());
            if (!wizard)
                return;
            timer_.stop();
            ran_ = true;
            act(wizard);
            if (wizard->isVisible())
                wizard->reject();
        });
        timer_.start(10);
    }
    bool ran() const { return ran_; }

private:
    QTimer timer_;
    bool ran_ = false;
};

// Opens a wizard with `open` of `window` and runs `act` on it; false when no wizard opened.
template <class Window, class Act> bool runWizard(Window* window, void (Window::*open)(), Act act)
{
    const WizardScript script(act);
    (window->*open)();
    return script.ran();
}

// The entry of `dataName` on the wizard's current page, set as a user would.
inline bool setEntry(QcbsWizard* wizard, const QString& dataName, const QString& text)
{
    QWidget* entry = wizard->currentWizardPage()->entry(dataName);
    if (auto* line = qobject_cast<QLineEdit*>(entry))
        line->setText(text);
    else if (auto* box = qobject_cast<QPlainTextEdit*>(entry))
        box->setPlainText(text);
    else if (auto* choice = qobject_cast<QComboBox*>(entry); choice && choice->findText(text) >= 0)
        choice->setCurrentIndex(choice->findText(text));
    else
        return false;
    return true;
}

// Next until the page of the class named, or false at the end.
inline bool goToPage(QcbsWizard* wizard, const char* className)
{
    for (int guard = 0; guard < 20; ++guard) {
        if (wizard->currentPage() && wizard->currentPage()->inherits(className))
            return true;
        const int before = wizard->currentId();
        wizard->next();
        if (wizard->currentId() == before)
            return false;
    }
    return false;
}

#endif
