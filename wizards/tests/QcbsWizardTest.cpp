#include "CifMessageTable.h"
#include "GuiTestSupport.h"
#include "QcbsDataItemHelpButton.h"
#include "QcbsDataItemInfo.h"
#include "QcbsJournalListBox.h"
#include "QcbsRichTextEdit.h"
#include "QcbsWizardAuthorPage.h"
#include "QcbsWizardErrorPage.h"
#include "QcbsWizardPublicationPage.h"
#include "QcbsWizardRequestedJournalPage.h"
#include "QcbsWizardSpaceGroupPage.h"
#include "WizardTestSupport.h"

#include <QPushButton>
#include <QRadioButton>
#include <QTextBlock>
#include <QTreeWidget>
#include <set>

namespace {

using Values = QList<QPair<QString, QString>>;

QString corpus(const QString& name)
{
    return sharedPath(QStringLiteral("corpus/cod/") + name);
}

// The block of the window's parsed document whose heading names `block`.
const CifDataBlock* parsedBlock(QcbsMainWindow* window, const QString& block)
{
    HCif cif = window->document();
    if (!cif)
        return nullptr;
    auto found = cif->find_block(block.toStdString());
    return found == cif->end() ? nullptr : found->get();
}

std::set<std::string> itemNames(const CifDataBlock& block)
{
    std::set<std::string> names;
    for (const HCifDataItem& item : block)
        names.insert(QString::fromStdString(item->name()).toLower().toStdString());
    return names;
}

std::size_t errorCount(QcbsMainWindow* window)
{
    return window->document() ? window->document()->errors()->count_of_severity(CifErrorSeverity) : 0;
}

QStringList column(const CifDataBlock& block, const char* name)
{
    QStringList values;
    if (HCifDataItem item = block.item(name))
        for (std::size_t row = 0; row < item->value_count(); ++row)
            values << QString::fromStdString(item->value(row));
    return values;
}

// Sets every listed value whose entry stands on the wizard's current page.
void fillPage(QcbsWizard* wizard, const Values& values)
{
    for (const auto& [name, value] : values)
        if (wizard->currentWizardPage()->entry(name))
            QVERIFY2(setEntry(wizard, name, value), qPrintable(name));
}

void finish(QcbsWizard* wizard)
{
    wizard->button(QWizard::FinishButton)->click();
}

struct CrystalRow {
    const char* file;
    const char* block;
    Values edits;
    QStringList removed;
};

struct CancelRow {
    bool publication;
    const char* file;
    int pagesPassed;
};

struct FindingsRow {
    const char* file;
    int line;
    const char* outcome;
    const char* counts;
    bool canContinue;
};

struct SymmetryRow {
    const char* file;
    const char* block;
    const char* warning;
    const char* offeredNumber;
};

struct LinkRow {
    const char* number;
    const char* symbol;
    const char* expectNumber;
    const char* expectSystem;
    const char* expectListed;
};

struct PublicationRow {
    const char* file; // empty: a new document, with no block
    const char* block;
    QcbsWizardPublicationPage::Choice opensWith;
    QcbsWizardPublicationPage::Choice choose;
    const char* typedJournal; // picked from the list as the first journal it leaves
    Values edits;
    Values expect;
    QStringList removed;
    int pageCount;
    const char* taken = nullptr; // a CIF named on the intro page of a new block
};

struct HelpRow {
    bool publication;
    const char* page;
    const char* dataName;
};

struct AuthorRow {
    const char* steps; // D delete, A add "Doe, J.", P previous, N next
    QStringList expect;
    int addresses; // a loop that is written again gains an address column
};

} // namespace

Q_DECLARE_METATYPE(CrystalRow)
Q_DECLARE_METATYPE(CancelRow)
Q_DECLARE_METATYPE(FindingsRow)
Q_DECLARE_METATYPE(SymmetryRow)
Q_DECLARE_METATYPE(LinkRow)
Q_DECLARE_METATYPE(PublicationRow)
Q_DECLARE_METATYPE(HelpRow)
Q_DECLARE_METATYPE(AuthorRow)

class QcbsWizardTest : public QObject {
    Q_OBJECT

    WindowFixture fixture_;

    // A window on a corpus file with the cursor on `line`, or on the line after the heading of
    // `block`.
    ScriptedWindow* open(const QString& file, int line, const QString& block = {})
    {
        ScriptedWindow* window = fixture_.newWindow();
        if (!window->loadFile(corpus(file), true, false))
            return window;
        QTextDocument* doc = window->editor()->document();
        for (QTextBlock text = doc->begin(); !block.isEmpty() && text.isValid(); text = text.next())
            if (text.text().trimmed() == block)
                line = text.blockNumber() + 1;
        window->editor()->setTextCursor(
            QTextCursor(doc->findBlockByNumber(qMin(line, doc->blockCount() - 1))));
        return window;
    }

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(sharedPath(QStringLiteral("corpus/cod"))))
            QSKIP("The shared corpus is not beside the repository");
    }
    void init() { fixture_.reset(); }

    void crystalWizardWritesBack_data()
    {
        addRows<CrystalRow>({
            {"older source moves to the newer name",
             {"1000000-bad-formula.cif",
              "data_1000000",
              {{"_chemical_name_common", "aluminophosphate"},
               {"_exptl_crystal_colour", "pale yellow"},
               {"_diffrn_radiation_probe", "x-ray"},
               {"_diffrn_source", "sealed X-ray tube"}},
              {"_diffrn_radiation_source"}}},
            {"second of eight blocks",
             {"Cottone.cif",
              "data_7000002",
              {{"_chemical_melting_point", "451(2)"},
               {"_diffrn_ambient_pressure", "101.3"},
               {"_chemical_compound_source", "synthesised"}},
              {}}},
        });
    }
    // Finish writes the edited copy over the block's lines, and nothing else of the file moves.
    void crystalWizardWritesBack()
    {
        QFETCH(CrystalRow, row);
        ScriptedWindow* window = open(QString::fromLatin1(row.file), 0, QString::fromLatin1(row.block));
        const std::set<std::string> before = itemNames(*parsedBlock(window, row.block));
        const std::size_t errorsBefore = errorCount(window);
        const QStringList linesBefore = window->editor()->toPlainText().split('\n');
        QStringList titles;
        QVERIFY(runWizard<QcbsMainWindow>(window, &QcbsMainWindow::crystalWizard, [&](QcbsWizard* wizard) {
            for (int page = 0; page < 7; ++page) {
                titles << wizard->currentPage()->title();
                fillPage(wizard, row.edits);
                wizard->next();
            }
            finish(wizard);
        }));

        QCOMPARE(titles.value(2), QStringLiteral("Physical and Chemical Information...   (page 3 of 7)"));
        QCOMPARE(titles.value(6), QStringLiteral("Apply changes to CIF...   (page 7 of 7)"));
        QVERIFY(window->editor()->parsed());
        const CifDataBlock* after = parsedBlock(window, row.block);
        QVERIFY(after);
        std::set<std::string> expected = before;
        for (const auto& [name, value] : row.edits) {
            QCOMPARE(QString::fromStdString(after->first_value(name.toStdString())), value);
            expected.insert(name.toLower().toStdString());
        }
        for (const QString& name : row.removed)
            expected.erase(name.toLower().toStdString());
        QCOMPARE(itemNames(*after), expected);
        QCOMPARE(errorCount(window), errorsBefore);
        // The lines of the other blocks are untouched.
        const QStringList linesAfter = window->editor()->toPlainText().split('\n');
        const int start = linesBefore.indexOf(QString::fromLatin1(row.block));
        QCOMPARE(linesAfter.mid(0, start), linesBefore.mid(0, start));
        QCOMPARE(linesAfter.value(start), QString::fromLatin1(row.block));
        const QRegularExpression heading(QStringLiteral("^data_"));
        const int nextBefore = linesBefore.indexOf(heading, start + 1);
        const int nextAfter = linesAfter.indexOf(heading, start + 1);
        QCOMPARE(nextBefore < 0, nextAfter < 0);
        if (nextBefore >= 0)
            QCOMPARE(linesAfter.mid(nextAfter), linesBefore.mid(nextBefore));
    }

    void cancelLeavesTextUnchanged_data()
    {
        addRows<CancelRow>({
            {"crystal, at the experimental page", {false, "1000000-bad-formula.cif", 3}},
            {"crystal, at the finish page", {false, "Cottone.cif", 6}},
            {"publication, at the authors", {true, "1000000-bad-formula.cif", 6}},
            {"publication, at the finish page", {true, "Cottone.cif", 7}},
        });
    }
    // Every page passed on the way has a changed field; Cancel still gives back the same bytes.
    void cancelLeavesTextUnchanged()
    {
        QFETCH(CancelRow, row);
        ScriptedWindow* window = open(QString::fromLatin1(row.file), 5);
        const QString before = window->editor()->toPlainText();
        int changed = 0;
        const auto script = [&](QcbsWizard* wizard) {
            for (int page = 0; page <= row.pagesPassed; ++page) {
                for (const QcbsWizardField& field : wizard->currentWizardPage()->fields())
                    if (field.entry()->isEnabled() &&
                        setEntry(wizard, field.dataName(), QStringLiteral("x-ray"))) {
                        ++changed;
                        break;
                    }
                if (page < row.pagesPassed)
                    wizard->next();
            }
            wizard->button(QWizard::CancelButton)->click();
        };
        QVERIFY(runWizard<QcbsMainWindow>(
            window, row.publication ? &QcbsMainWindow::publicationWizard : &QcbsMainWindow::crystalWizard,
            script));
        QVERIFY(changed >= 2);
        QCOMPARE(window->editor()->toPlainText(), before);
        QVERIFY(!window->editor()->document()->isModified());
    }

    void findingsPage_data()
    {
        addRows<FindingsRow>({
            {"block holding an error",
             {"funny-disorder-markups.cif", 100, "Sorry, the wizard cannot continue whilst there are errors.",
              "CIF processed with 0 warnings and 1 error", false}},
            {"clean block of the same file",
             {"funny-disorder-markups.cif", 10, "Cif processed with no warnings or errors.",
              "CIF processed with 0 warnings and 0 errors", true}},
            {"warning only",
             {"1011060-graphite-err.cif", 20,
              "It is strongly recommended that you fix syntax warnings before using the wizard.",
              "CIF processed with 1 warning and 0 errors", true}},
        });
    }
    void findingsPage()
    {
        QFETCH(FindingsRow, row);
        ScriptedWindow* window = open(QString::fromLatin1(row.file), row.line);
        QString status;
        int listed = -1;
        bool passed = false;
        QVERIFY(runWizard<QcbsMainWindow>(window, &QcbsMainWindow::crystalWizard, [&](QcbsWizard* wizard) {
            wizard->next();
            auto* page = qobject_cast<QcbsWizardErrorPage*>(wizard->currentPage());
            if (!page)
                return;
            status = page->status();
            listed = page->findingList()->topLevelItemCount();
            wizard->next();
            passed = wizard->currentPage() != page;
        }));
        QCOMPARE(status, QString::fromLatin1(row.outcome) + '\n' + QString::fromLatin1(row.counts));
        QCOMPARE(passed, row.canContinue);
        QCOMPARE(listed == 0, QString::fromLatin1(row.counts).contains("0 warnings and 0 errors"));
    }

    void symmetryCheck_data()
    {
        addRows<SymmetryRow>({
            {"symbol names another group",
             {"wrong-multiplicity.cif", "data_mnncn",
              "Warning: Space group symbol: R 3 2 does not agree \nwith the given symmetry operators: R-3m",
              "166"}},
            {"bracketed screw axis and 1s", {"Cottone.cif", "data_7000002", "", nullptr}},
            {"operators that form no group", {"8103382.cif", "data_8103382", "", nullptr}},
            {"no operators", {"2000000-no-symmetry.cif", "data_2000000", "", nullptr}},
        });
    }
    // The offered symbol, taken, reaches the file and silences the warning.
    void symmetryCheck()
    {
        QFETCH(SymmetryRow, row);
        ScriptedWindow* window = open(QString::fromLatin1(row.file), 0, QString::fromLatin1(row.block));
        QString warning, afterOffer, number;
        QVERIFY(runWizard<QcbsMainWindow>(window, &QcbsMainWindow::crystalWizard, [&](QcbsWizard* wizard) {
            QVERIFY(goToPage(wizard, "QcbsWizardSpaceGroupPage"));
            auto* page = qobject_cast<QcbsWizardSpaceGroupPage*>(wizard->currentPage());
            warning = page->warning();
            if (!page->offer()->isVisible())
                return;
            page->offer()->click();
            afterOffer = page->warning();
            number = qobject_cast<QLineEdit*>(page->entry("_symmetry_Int_Tables_number"))->text();
            goToPage(wizard, "QcbsWizardFinishPage");
            finish(wizard);
        }));
        QCOMPARE(warning, QString::fromLatin1(row.warning));
        if (!row.offeredNumber)
            return;
        QCOMPARE(afterOffer, QString());
        QCOMPARE(number, QString::fromLatin1(row.offeredNumber));
        const CifDataBlock* after = parsedBlock(window, row.block);
        QCOMPARE(after->first_value("_symmetry_space_group_name_H-M"), std::string("R-3m"));
        QCOMPARE(after->first_value("_symmetry_Int_Tables_number"), std::string(row.offeredNumber));
        QCOMPARE(errorCount(window), std::size_t(0));
    }

    void linkedSymmetryFields_data()
    {
        addRows<LinkRow>({
            {"number gives system and symbols", {"14", nullptr, "14", "monoclinic", "P21/c"}},
            {"cubic number", {"225", nullptr, "225", "cubic", "Fm-3m"}},
            {"symbol with blanks gives number", {nullptr, "P 21 21 21", "19", "orthorhombic", "P212121"}},
            {"rhombohedral axes", {nullptr, "R3r", "146", "rhombohedral", "R3"}},
            {"incomplete symbol", {nullptr, "P21/*", "511", "monoclinic", "P21/*"}},
            {"unknown symbol changes nothing", {"2", "Q 42", "2", "triclinic", "P-1"}},
        });
    }
    void linkedSymmetryFields()
    {
        QFETCH(LinkRow, row);
        QcbsWizardSpaceGroupPage page;
        page.loadFields(CifDataBlock("data_empty", -1, HCifDictionary()));
        auto* number = qobject_cast<QLineEdit*>(page.entry("_symmetry_Int_Tables_number"));
        auto* system = qobject_cast<QComboBox*>(page.entry("_symmetry_cell_setting"));
        auto* symbol = qobject_cast<QComboBox*>(page.entry("_symmetry_space_group_name_H-M"));
        if (row.number)
            number->setText(QString::fromLatin1(row.number));
        if (row.symbol) {
            symbol->setEditText(QString::fromLatin1(row.symbol));
            page.updateSpacegroupName(QString::fromLatin1(row.symbol));
        }
        QCOMPARE(number->text(), QString::fromLatin1(row.expectNumber));
        QCOMPARE(system->currentText(), QString::fromLatin1(row.expectSystem));
        QVERIFY2(symbol->findText(QString::fromLatin1(row.expectListed)) >= 0, row.expectListed);
    }

    void publicationWizard_data()
    {
        using C = QcbsWizardPublicationPage::Choice;
        addRows<PublicationRow>({
            {"new block, private communication",
             {"",
              "data_publication_text",
              C::Submission,
              C::PrivateCommunication,
              nullptr,
              {{"_publ_section_title", "Zeolite frameworks"}, {"_publ_contact_author_phone", "+44 191 000"}},
              {{"_publ_requested_journal", "Private Communication"},
               {"_publ_contact_author_name", "Lovelace, Ada"},
               {"_publ_author_name", "Lovelace, Ada"},
               {"_publ_section_title", "Zeolite frameworks"}},
              {},
              7}},
            {"new block from an earlier CIF",
             {"",
              "data_publication_text",
              C::Published,
              C::Published,
              nullptr,
              {},
              {{"_journal_name_full", "Organometallics"}, {"_journal_volume", "21"}},
              {"_publ_requested_journal", "_cell_length_a"},
              8,
              "Cottone.cif"}},
            {"published paper resubmitted",
             {"Cottone.cif",
              "data_7000004",
              C::Published,
              C::Submission,
              "Acta Crystallogr, Sect C",
              {},
              {{"_publ_requested_journal", "Acta Crystallogr. Sect. C"},
               {"_publ_contact_author_name", "Lovelace, Ada"}},
              {"_journal_name_full", "_journal_volume", "_journal_page_first", "_journal_year"},
              8}},
            {"published paper, reference corrected",
             {"Cottone.cif",
              "data_7000001",
              C::Published,
              C::Published,
              nullptr,
              {{"_journal_volume", "22"}, {"_journal_page_last", "4001"}},
              {{"_journal_name_full", "Organometallics"},
               {"_journal_volume", "22"},
               {"_journal_page_last", "4001"}},
              {"_publ_requested_journal"},
              8}},
        });
    }
    // Each of the three ways through the publication wizard, from the main window and back.
    void publicationWizard()
    {
        QFETCH(PublicationRow, row);
        QcbsPreferences prefs = QcbsPreferences::read();
        prefs.contactName = QStringLiteral("Lovelace, Ada");
        prefs.contactAddress = QStringLiteral("Durham");
        prefs.write();
        ScriptedWindow* window = QByteArray(row.file).isEmpty()
                                     ? fixture_.newWindow()
                                     : open(QString::fromLatin1(row.file), 0, QString::fromLatin1(row.block));
        const QString untouched = window->editor()->toPlainText();
        QcbsWizardPublicationPage::Choice opened = row.choose;
        int pages = 0;
        bool fileLine = false;
        QVERIFY(
            runWizard<QcbsMainWindow>(window, &QcbsMainWindow::publicationWizard, [&](QcbsWizard* wizard) {
                auto* file = wizard->currentPage()->findChild<QLineEdit*>();
                fileLine = file != nullptr;
                if (file && row.taken)
                    file->setText(corpus(QString::fromLatin1(row.taken)));
                for (int page = 0; page < 10 && !wizard->currentPage()->isFinalPage(); ++page) {
                    if (auto* choice = qobject_cast<QcbsWizardPublicationPage*>(wizard->currentPage())) {
                        opened = choice->choice();
                        choice->button(row.choose)->click();
                    }
                    if (auto* requested =
                            qobject_cast<QcbsWizardRequestedJournalPage*>(wizard->currentPage())) {
                        requested->journalEdit()->setText(QString::fromLatin1(row.typedJournal));
                        QListWidget* list = requested->journalList();
                        for (int i = 0; i < list->count(); ++i)
                            if (!list->item(i)->isHidden()) {
                                emit list->itemClicked(list->item(i));
                                break;
                            }
                    }
                    fillPage(wizard, row.edits);
                    wizard->next();
                }
                pages = wizard->currentPage()->title().section(" of ", 1).chopped(1).toInt();
                finish(wizard);
            }));

        QCOMPARE(opened, row.opensWith);
        QCOMPARE(pages, row.pageCount);
        QCOMPARE(fileLine, QByteArray(row.file).isEmpty());
        QVERIFY(window->editor()->toPlainText() != untouched);
        QVERIFY(window->editor()->parsed());
        const CifDataBlock* after = parsedBlock(window, row.block);
        QVERIFY(after);
        for (const auto& [name, value] : row.expect)
            QCOMPARE(QString::fromStdString(after->first_value(name.toStdString())), value);
        for (const QString& name : row.removed)
            QVERIFY2(!after->item(name.toStdString()), qPrintable(name));
        QCOMPARE(errorCount(window), std::size_t(0));

        // The block the wizard wrote opens it again on the same choice.
        QVERIFY(
            runWizard<QcbsMainWindow>(window, &QcbsMainWindow::publicationWizard, [&](QcbsWizard* wizard) {
                goToPage(wizard, "QcbsWizardPublicationPage");
                opened = qobject_cast<QcbsWizardPublicationPage*>(wizard->currentPage())->choice();
            }));
        QCOMPARE(opened, row.choose);
    }

    void helpButtons_data()
    {
        addRows<HelpRow>({
            {"crystal, symmetry", {false, "QcbsWizardSpaceGroupPage", "_symmetry_space_group_name_H-M"}},
            {"publication, authors", {true, "QcbsWizardAuthorPage", "_publ_author_address"}},
        });
    }
    // A row's help button opens the dictionary's text on that row's data name.
    void helpButtons()
    {
        QFETCH(HelpRow, row);
        ScriptedWindow* window = open(QStringLiteral("Cottone.cif"), 5);
        QString shown, text;
        const auto script = [&](QcbsWizard* wizard) {
            QVERIFY(goToPage(wizard, row.page));
            for (auto* button : wizard->currentPage()->findChildren<QcbsDataItemHelpButton*>())
                if (button->dataItemName() == QLatin1String(row.dataName))
                    button->click();
            if (auto* help = wizard->findChild<QcbsDataItemInfo*>()) {
                shown = help->dataItemName();
                text = help->toPlainText();
            }
        };
        QVERIFY(runWizard<QcbsMainWindow>(
            window, row.publication ? &QcbsMainWindow::publicationWizard : &QcbsMainWindow::crystalWizard,
            script));
        QCOMPARE(shown, QString::fromLatin1(row.dataName));
        QVERIFY2(text.contains("Definition:") && !text.contains("(not in dictionary)"), qPrintable(text));
    }

    void authorList_data()
    {
        addRows<AuthorRow>({
            {"delete the first, add one",
             {"D A", {"J. MARROT", "J. RENAUDIN", "V. MAISONNEUVE", "Doe, J."}, 4}},
            {"walk without change",
             {"N N P N N P P P", {"S. PHAN THANH", "J. MARROT", "J. RENAUDIN", "V. MAISONNEUVE"}, 0}},
            {"delete from the end", {"N N N D P D", {"S. PHAN THANH", "J. RENAUDIN"}, 2}},
            {"delete all", {"D D D D D", {}, 0}},
        });
    }
    // The author page edits the loop as a list; Finish writes the list back as the loop.
    void authorList()
    {
        QFETCH(AuthorRow, row);
        ScriptedWindow* window = open(QStringLiteral("1000000-bad-formula.cif"), 5);
        QVERIFY(
            runWizard<QcbsMainWindow>(window, &QcbsMainWindow::publicationWizard, [&](QcbsWizard* wizard) {
                QVERIFY(goToPage(wizard, "QcbsWizardAuthorPage"));
                auto* page = qobject_cast<QcbsWizardAuthorPage*>(wizard->currentPage());
                QCOMPARE(page->authorCount(), 4);
                for (const QString& step : QString::fromLatin1(row.steps).split(' ')) {
                    if (step == "D") {
                        page->deleteButton()->click();
                    } else if (step == "A") {
                        page->addButton()->click();
                        page->familyEdit()->setText(QStringLiteral("Doe"));
                        page->givenEdit()->setText(QStringLiteral("J."));
                    } else {
                        (step == "N" ? page->nextButton() : page->previousButton())->click();
                    }
                }
                goToPage(wizard, "QcbsWizardFinishPage");
                finish(wizard);
            }));
        const CifDataBlock* after = parsedBlock(window, QStringLiteral("data_1000000"));
        QVERIFY(after);
        QCOMPARE(column(*after, "_publ_author_name"), row.expect);
        QCOMPARE(column(*after, "_publ_author_address").size(), row.addresses);
        QCOMPARE(errorCount(window), std::size_t(0));
    }
};

QTEST_MAIN(QcbsWizardTest)
#include "QcbsWizardTest.moc"
