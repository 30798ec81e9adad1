// Writes a picture of every page of both wizards, opened from the main window on real CIFs as a
// user would open them: the Crystal Data Wizard on CIF, its space group page on a file whose
// symbol disagrees with its operators, its findings page on a damaged block, and the
// Publication Data Wizard on CIF (each of its three ways) and on an empty document. The settings
// live in a temporary directory for the run.
//
//   xvfb-run -a cifward-wizard-shots OUTDIR CIF DISAGREEING.cif DAMAGED.cif

#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"
#include "QcbsWizardPublicationPage.h"
#include "QcbsWizardRequestedJournalPage.h"
#include "WizardTestSupport.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QRadioButton>
#include <QTextBlock>
#include <cstdio>

namespace {

QString outDir;
int failures = 0;

void shoot(QWidget* widget, const QString& name)
{
    for (int i = 0; i < 5; ++i)
        QApplication::processEvents();
    const QString path = outDir + QLatin1Char('/') + name + QStringLiteral(".png");
    if (!widget->grab().save(path)) {
        std::fprintf(stderr, "cifward-wizard-shots: cannot write %s\n", qPrintable(path));
        ++failures;
        return;
    }
    std::printf("%s\n", qPrintable(path));
}

// Every page from the first to Finish, or up to the page that stops the wizard; `prepare` fills
// in a page before it is taken.
template <class Prepare> void shootAllPages(QcbsWizard* wizard, const QString& stem, Prepare prepare)
{
    for (int page = 1; page <= 12; ++page) {
        prepare(wizard->currentPage());
        shoot(wizard, stem + QStringLiteral("-%1").arg(page));
        const int before = wizard->currentId();
        wizard->next();
        if (wizard->currentId() == before)
            break;
    }
}

// With `line` -1 the cursor goes to the line after the first data_ heading, where a user would
// start.
QcbsMainWindow* openAt(const HQcbsAppState& state, const QString& path, int line)
{
    auto* window = new QcbsMainWindow(state);
    window->setGeometry(20, 20, 900, 700);
    window->show();
    if (!path.isEmpty() && !window->loadFile(path, true, false)) {
        std::fprintf(stderr, "cifward-wizard-shots: cannot load %s\n", qPrintable(path));
        ++failures;
    }
    QTextDocument* doc = window->editor()->document();
    for (QTextBlock block = doc->begin(); line < 0 && block.isValid(); block = block.next())
        if (block.text().startsWith(QLatin1String("data_")))
            line = block.blockNumber() + 1;
    window->editor()->setTextCursor(
        QTextCursor(doc->findBlockByNumber(qBound(0, line, doc->blockCount() - 1))));
    return window;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 5) {
        std::fprintf(stderr, "usage: cifward-wizard-shots OUTDIR CIF DISAGREEING.cif DAMAGED.cif\n");
        return 2;
    }
    outDir = QString::fromLocal8Bit(argv[1]);
    const QString cif = QString::fromLocal8Bit(argv[2]);
    const QString disagreeing = QString::fromLocal8Bit(argv[3]);
    const QString damaged = QString::fromLocal8Bit(argv[4]);
    const IsolatedSettings settings;
    if (!QDir().mkpath(outDir))
        return 2;

    HQcbsAppState state(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    state->loadDictionaries();

    // The contact that the publication wizard offers, stored as the preferences dialog would.
    QcbsPreferences prefs = QcbsPreferences::read();
    prefs.contactName = QStringLiteral("Lovelace, Ada");
    prefs.contactAddress = QStringLiteral("Department of Chemistry\nSouth Road\nDurham");
    prefs.contactEmail = QStringLiteral("ada@example.org");
    prefs.write();

    bool opened = true;
    QcbsMainWindow* window = openAt(state, cif, -1);
    opened &= runWizard<QcbsMainWindow>(window, &QcbsMainWindow::crystalWizard, [](QcbsWizard* wizard) {
        shootAllPages(wizard, QStringLiteral("crystal"), [](QWizardPage*) {});
    });

    QcbsMainWindow* other = openAt(state, disagreeing, -1);
    opened &= runWizard<QcbsMainWindow>(other, &QcbsMainWindow::crystalWizard, [](QcbsWizard* wizard) {
        if (goToPage(wizard, "QcbsWizardSpaceGroupPage"))
            shoot(wizard, QStringLiteral("crystal-symmetry-warning"));
    });

    QcbsMainWindow* broken = openAt(state, damaged, 1 << 30);
    opened &= runWizard<QcbsMainWindow>(broken, &QcbsMainWindow::crystalWizard, [](QcbsWizard* wizard) {
        wizard->next();
        shoot(wizard, QStringLiteral("crystal-errors"));
    });

    // Each choice of the publication page leads another way.
    const struct {
        QcbsWizardPublicationPage::Choice choice;
        const char* stem;
    } ways[] = {{QcbsWizardPublicationPage::Submission, "publication-submission"},
                {QcbsWizardPublicationPage::PrivateCommunication, "publication-private"},
                {QcbsWizardPublicationPage::Published, "publication-published"}};
    for (const auto& way : ways) {
        opened &=
            runWizard<QcbsMainWindow>(window, &QcbsMainWindow::publicationWizard, [way](QcbsWizard* wizard) {
                shootAllPages(wizard, QString::fromLatin1(way.stem), [way](QWizardPage* page) {
                    if (auto* publication = qobject_cast<QcbsWizardPublicationPage*>(page))
                        publication->setChoice(way.choice);
                    if (auto* requested = qobject_cast<QcbsWizardRequestedJournalPage*>(page))
                        requested->journalEdit()->setText(QStringLiteral("Acta Cryst"));
                });
            });
    }

    QcbsMainWindow* empty = openAt(state, {}, 0);
    opened &= runWizard<QcbsMainWindow>(empty, &QcbsMainWindow::publicationWizard, [](QcbsWizard* wizard) {
        shoot(wizard, QStringLiteral("publication-new-block"));
    });

    if (!opened) {
        std::fprintf(stderr, "cifward-wizard-shots: a wizard did not open\n");
        return 1;
    }
    return failures == 0 ? 0 : 1;
}
