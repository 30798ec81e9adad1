#include "GuiTestSupport.h"
#include "QcbsFindDialog.h"
#include "QcbsGotoLineDialog.h"
#include "QcbsReplaceDialog.h"
#include "QcbsRichTextEdit.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextBlock>

namespace {

// One block of a real file: "_cell_length" on lines 51 to 53, "_cell" last before line 100 on
// line 59, "jaune" once, on line 85, "Beq" on 36 lines, and no "q" followed by a digit.
const QString corpusFile = QStringLiteral("corpus/cod/2001253-not-numeric-limits.cif");

// What the user does, step by step, and what follows: the selection as "line:text", whether
// "Start at Beginning" is ticked, the search history, and the text against the file's.
struct SearchCase {
    QStringList steps;
    QString selection;
    bool begin;
    QStringList history; // empty: not looked at
    QString text;        // "same", or "Old => New": every Old became New
};

QcbsSearchDialog* openDialog()
{
    if (QcbsReplaceDialog* replace = QcbsReplaceDialog::existing(); replace && replace->isVisible())
        return replace;
    return QcbsFindDialog::existing();
}

void click(QWidget* dialog, const char* name)
{
    auto* button = dialog->findChild<QPushButton*>(QLatin1String(name));
    QVERIFY2(button, name);
    button->click();
}

void run(QcbsMainWindow* window, const QString& step)
{
    QcbsRichTextEdit* editor = window->editor();
    const QString verb = step.section(QLatin1Char(' '), 0, 0);
    const QString rest = step.section(QLatin1Char(' '), 1);
    if (verb == QLatin1String("find")) {
        window->editFind();
        QcbsFindDialog::existing()->findCombo()->setEditText(rest);
        click(QcbsFindDialog::existing(), "buttonFind");
    } else if (verb == QLatin1String("again")) {
        click(openDialog(), openDialog() == QcbsFindDialog::existing() ? "buttonFind" : "buttonReplace");
    } else if (verb == QLatin1String("replace") || verb == QLatin1String("replaceall")) {
        window->editReplace();
        QcbsReplaceDialog* dialog = QcbsReplaceDialog::existing();
        dialog->findCombo()->setEditText(rest.section(QStringLiteral(" => "), 0, 0));
        dialog->replaceCombo()->setEditText(rest.section(QStringLiteral(" => "), 1));
        click(dialog, verb == QLatin1String("replace") ? "buttonReplace" : "buttonReplaceAll");
    } else if (verb == QLatin1String("back") || verb == QLatin1String("case") ||
               verb == QLatin1String("words")) {
        window->editFind();
        const char* name = verb == QLatin1String("back")   ? "radioBackward"
                           : verb == QLatin1String("case") ? "checkCase"
                                                           : "checkWords";
        qobject_cast<QAbstractButton*>(QcbsFindDialog::existing()->findChild<QWidget*>(QLatin1String(name)))
            ->setChecked(true);
    } else if (verb == QLatin1String("next")) {
        window->editFindNext();
    } else if (verb == QLatin1String("previous")) {
        window->editFindPrevious();
    } else if (verb == QLatin1String("close")) {
        openDialog()->close();
    } else if (verb == QLatin1String("top")) {
        editor->moveCursor(QTextCursor::Start);
    } else if (verb == QLatin1String("undo")) {
        editor->undo();
    } else if (verb == QLatin1String("goto")) {
        window->editGotoLine();
        QcbsGotoLineDialog* dialog = window->findChildren<QcbsGotoLineDialog*>().constLast();
        QVERIFY(dialog->isVisible());
        dialog->entry()->setText(rest);
        click(dialog, "buttonGo");
    } else {
        QFAIL(qPrintable(step));
    }
}

QString selection(QcbsRichTextEdit* editor)
{
    const QTextCursor cursor = editor->textCursor();
    const int line = editor->document()->findBlock(cursor.selectionStart()).blockNumber() + 1;
    return QString::number(line) + ':' + cursor.selectedText();
}

} // namespace

Q_DECLARE_METATYPE(SearchCase)

class QcbsFindReplaceTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void searchFromTheWindow_data()
    {
        const QStringList nine = {"find q1", "find q2", "find q3", "find q4", "find q5",
                                  "find q6", "find q7", "find q8", "find q9", "find q9"};
        addRows<SearchCase>({
            {"forward, then the next",
             {{"top", "find _cell_length", "again"}, "52:_cell_length", false, {}, "same"}},
            {"a failed search ticks Start at Beginning",
             {{"top", "find jaune", "again"}, "85:jaune", true, {"jaune"}, "same"}},
            {"the press after it starts from the top",
             {{"top", "find jaune", "again", "again"}, "85:jaune", false, {}, "same"}},
            {"backward", {{"goto 100", "back", "find _cell"}, "59:_cell", false, {}, "same"}},
            {"case sensitive misses", {{"top", "case", "find JAUNE"}, "1:", true, {}, "same"}},
            {"case blind finds", {{"top", "find JAUNE"}, "85:jaune", false, {}, "same"}},
            {"whole words only", {{"top", "words", "find jaun"}, "1:", true, {}, "same"}},
            {"or any part", {{"top", "find jaun"}, "85:jaun", false, {}, "same"}},
            {"a history of eight, newest first, each once",
             {nine, "1:", true, {"q9", "q8", "q7", "q6", "q5", "q4", "q3", "q2"}, "same"}},
            {"find next without the dialog",
             {{"find _cell_length_a", "close", "top", "next"}, "51:_cell_length_a", false, {}, "same"}},
            {"find previous with nothing before goes to the start",
             {{"find _cell_length_a", "close", "previous"}, "1:", false, {}, "same"}},
            {"find next with nothing after goes to the end",
             {{"find zzzz", "close", "next"}, "473:", true, {}, "same"}},
            {"replace finds first", {{"top", "replace jaune => yellow"}, "85:jaune", false, {}, "same"}},
            {"and replaces on the second press",
             {{"top", "replace jaune => yellow", "again"}, "85:", true, {}, "jaune => yellow"}},
            {"a selection differing in case is replaced",
             {{"top", "find jaune", "replace JAUNE => yellow"}, "85:", true, {}, "jaune => yellow"}},
            {"replace all", {{"replaceall Beq => Uiso"}, "1:", false, {"Beq"}, "Beq => Uiso"}},
            {"one undo takes replace all back", {{"replaceall Beq => Uiso", "undo"}, "", false, {}, "same"}},
            {"replace all without a match", {{"replaceall zzzz => y"}, "1:", false, {}, "same"}},
            {"an empty search text does nothing", {{"top", "find "}, "1:", false, {}, "same"}},
            {"go to a line",
             {{"goto 51"}, "51:_cell_length_a                   19.214(8)", false, {}, "same"}},
            {"a line past the end stays", {{"goto 51", "goto 9999"}, "51:", false, {}, "same"}},
        });
    }
    void searchFromTheWindow()
    {
        QFETCH(SearchCase, row);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(sharedPath(corpusFile), false));
        const QString original = window->editor()->toPlainText();
        for (const QString& step : row.steps) {
            run(window, step);
            if (QTest::currentTestFailed())
                return;
        }
        if (!row.selection.isEmpty())
            QVERIFY2(selection(window->editor()).startsWith(row.selection),
                     qPrintable(selection(window->editor())));
        if (QcbsSearchDialog* dialog = openDialog())
            QCOMPARE(dialog->findChild<QCheckBox*>(QStringLiteral("checkBegin"))->isChecked(), row.begin);
        if (!row.history.isEmpty()) {
            QStringList kept;
            for (int i = 0; i < openDialog()->findCombo()->count(); ++i)
                kept << openDialog()->findCombo()->itemText(i);
            QCOMPARE(kept, row.history);
            // Closed, the dialog leaves its history in the settings.
            openDialog()->close();
            QCOMPARE(QcbsPreferences::read().findRecent, row.history);
        }
        const QString after = window->editor()->toPlainText();
        if (row.text == QLatin1String("same")) {
            QCOMPARE(after, original);
            return;
        }
        const QString from = row.text.section(QStringLiteral(" => "), 0, 0);
        const QString to = row.text.section(QStringLiteral(" => "), 1);
        QCOMPARE(after, QString(original).replace(from, to));
    }
};

QTEST_MAIN(QcbsFindReplaceTest)
#include "QcbsFindReplaceTest.moc"
