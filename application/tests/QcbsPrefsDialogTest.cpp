#include "QcbsPrefsDialog.h"

#include "CifConcreteDictionary.h"
#include "CifDictionaryPool.h"
#include "GuiTestSupport.h"
#include "QcbsDictionaryCheckBox.h"
#include "QcbsDictionarySettings.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"
#include "QcbsStyleStore.h"
#include "QcbsStylesDialog.h"

#include <QtTest>
#include <QtWidgets>
#include <fstream>
#include <functional>
#include <sstream>

namespace {

class ScriptedPrefsDialog : public QcbsPrefsDialog {
public:
    using QcbsPrefsDialog::QcbsPrefsDialog;
    QString answer; // what the file dialog gives; empty: cancelled

protected:
    QString chooseFile(const QString&, const QString&) override { return answer; }
};

class ScriptedStylesDialog : public QcbsStylesDialog {
public:
    QFont font{QStringLiteral("Times"), 17};
    QColor color{1, 2, 3};
    bool askForBase = false; // show the real question instead of answering `base`
    FontBase base = NoBase;

protected:
    bool chooseFont(QFont& chosen) override
    {
        chosen = font;
        return true;
    }
    bool chooseColor(QColor& chosen) override
    {
        chosen = color;
        return true;
    }
    FontBase chooseFontBase() override { return askForBase ? QcbsStylesDialog::chooseFontBase() : base; }
};

using Change = std::function<void(ScriptedPrefsDialog&)>;

template <class T> T* child(const QObject& parent, const char* name)
{
    T* found = parent.findChild<T*>(QLatin1String(name));
    if (!found)
        qFatal("no widget named %s", name);
    return found;
}

Change check(const char* name, bool on = true)
{
    return [=](ScriptedPrefsDialog& d) { child<QAbstractButton>(d, name)->setChecked(on); };
}

Change spin(const char* name, int value)
{
    return [=](ScriptedPrefsDialog& d) { child<QSpinBox>(d, name)->setValue(value); };
}

Change browse(void (QcbsPrefsDialog::*slot)(), const char* answer)
{
    return [=](ScriptedPrefsDialog& d) {
        d.answer = QLatin1String(answer);
        (d.*slot)();
    };
}

// What the dialog edits, as it reads back from the store.
QVariantList edited(const QcbsPreferences& p)
{
    return {p.reuseWindow,       p.textOnButtons,     p.saveBackupFile,      p.lineLengthLimit,
            p.maxConsecError,    p.mandatoryFilename, p.checkMandatoryItems, p.templateFilename,
            p.startWithTemplate, p.lineNumbers,       p.contactName,         p.contactAddress,
            p.contactEmail,      p.contactPhone};
}

QStringList emitted(QcbsPrefsDialog& dialog, const std::function<void()>& action)
{
    using Signal = void (QcbsPrefsDialog::*)();
    const std::pair<Signal, const char*> all[] = {
        {&QcbsPrefsDialog::prefsChanged, "prefsChanged"},
        {&QcbsPrefsDialog::editorPrefsChanged, "editorPrefsChanged"},
        {&QcbsPrefsDialog::mainWinPrefsChanged, "mainWinPrefsChanged"},
        {&QcbsPrefsDialog::parserPrefsChanged, "parserPrefsChanged"},
        {&QcbsPrefsDialog::mandatoryPrefsChanged, "mandatoryPrefsChanged"}};
    QStringList names;
    QObject receiver;
    for (const auto& signal : all)
        QObject::connect(&dialog, signal.first, &receiver, [&names, name = signal.second] { names << name; });
    action();
    names.sort();
    return names;
}

QcbsStyles storedStyles()
{
    return QcbsStyleStore::read(0);
}

} // namespace

Q_DECLARE_METATYPE(Change)

class QcbsPrefsDialogTest : public QObject {
    Q_OBJECT
private slots:
    void init() { isolated_.clear(); }
    void tabContents_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("texts"); // group titles, button and label texts, list columns
        const auto row = [](const char* tab, const char* title, const char* texts) {
            QTest::newRow(tab) << title << QString::fromLatin1(texts).split(QLatin1Char('|'));
        };
        row("0", "General",
            "Interface|Use multiple windows|Reuse single window|Show text on toolbar buttons|"
            "Backup CIFs|Save backup CIFs");
        row("1", "CIF checking",
            "Parser|Soft line length limit|Tolerance|Maximum consecutive\nerror lines|"
            "Mandatory Data Items File|<not set>|Browse|Check for Mandatory Data Items");
        row("2", "Editor",
            "Template File|<not set>|Browse|Always start with template|Fonts and Colours|"
            "Click to change style settings|Line numbers|Show line numbers");
        row("3", "Dictionaries", "Enabled|Name|Version|Date");
        row("4", "Wizard", "Contact author details|Name :|Address :|Email :|Telephone :");
    }
    void tabContents()
    {
        QFETCH(QString, title);
        QFETCH(QStringList, texts);
        QcbsPreferences prefs;
        QcbsPrefsDialog dialog(&prefs, nullptr);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Preferences"));
        QCOMPARE(dialog.minimumSize(), QSize(400, 275));
        const int index = QString::fromLatin1(QTest::currentDataTag()).toInt();
        QCOMPARE(dialog.tabs()->count(), 5);
        QCOMPARE(dialog.tabs()->tabText(index), title);
        const QWidget* page = dialog.tabs()->widget(index);
        QStringList found;
        for (const QGroupBox* box : page->findChildren<QGroupBox*>())
            found << box->title();
        for (const QAbstractButton* button : page->findChildren<QAbstractButton*>())
            found << button->text();
        for (const QLabel* label : page->findChildren<QLabel*>())
            found << label->text();
        for (const QTreeWidget* list : page->findChildren<QTreeWidget*>())
            for (int column = 0; column < list->columnCount(); ++column)
                found << list->headerItem()->text(column);
        found.sort();
        texts.sort();
        QCOMPARE(found, texts);
    }

    void applyEmitsChangedGroups_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("expected");
        const QString editor = "editorPrefsChanged", window = "mainWinPrefsChanged",
                      parser = "parserPrefsChanged", mandatory = "mandatoryPrefsChanged",
                      prefs = "prefsChanged";
        QTest::newRow("nothing") << Change([](ScriptedPrefsDialog&) {}) << QStringList{prefs};
        QTest::newRow("reuse window") << check("reuseWindow") << QStringList{window, prefs};
        QTest::newRow("text on buttons") << check("textOnButtons") << QStringList{window, prefs};
        QTest::newRow("backup") << check("saveBackup") << QStringList{prefs};
        QTest::newRow("line length limit") << spin("lineLengthLimit", 100) << QStringList{parser, prefs};
        QTest::newRow("tolerance") << spin("lineLengthTolerance", 10) << QStringList{parser, prefs};
        QTest::newRow("consecutive lines") << spin("maxConsecError", 7) << QStringList{parser, prefs};
        QTest::newRow("mandatory file")
            << browse(&QcbsPrefsDialog::browseForMandatory, "/d/m.txt") << QStringList{mandatory, prefs};
        QTest::newRow("check mandatory") << check("checkMandatory") << QStringList{mandatory, prefs};
        QTest::newRow("template file")
            << browse(&QcbsPrefsDialog::browseForTemplate, "/d/t.cif") << QStringList{editor, prefs};
        QTest::newRow("browse cancelled")
            << browse(&QcbsPrefsDialog::browseForTemplate, "") << QStringList{prefs};
        QTest::newRow("start with template") << check("startWithTemplate") << QStringList{editor, prefs};
        QTest::newRow("line numbers") << check("lineNumbers") << QStringList{editor, prefs};
        QTest::newRow("contact") << Change([](ScriptedPrefsDialog& d) {
            child<QLineEdit>(d, "contactEmail")->setText("a@b.org");
        }) << QStringList{prefs};
        QTest::newRow("changed and back") << Change([](ScriptedPrefsDialog& d) {
            check("lineNumbers", true)(d);
            check("lineNumbers", false)(d);
        }) << QStringList{prefs};
        QTest::newRow("two groups") << Change([](ScriptedPrefsDialog& d) {
            check("lineNumbers")(d);
            check("reuseWindow")(d);
        }) << QStringList{editor, window, prefs};
    }
    void applyEmitsChangedGroups()
    {
        QFETCH(Change, change);
        QFETCH(QStringList, expected);
        QcbsPreferences prefs;
        ScriptedPrefsDialog dialog(&prefs, nullptr);
        change(dialog);
        expected.sort();
        QCOMPARE(emitted(dialog, [&] { dialog.applyPressed(); }), expected);
        QCOMPARE(edited(QcbsPreferences::read()), edited(prefs));
        // The values are taken: applying again changes nothing.
        QCOMPARE(emitted(dialog, [&] { dialog.applyPressed(); }), QStringList{"prefsChanged"});
    }

    void defaultsChangeWidgetsOnly()
    {
        // Widget, property, the default it shows.
        const std::tuple<const char*, const char*, QVariant> widgets[] = {
            {"multipleWindows", "checked", true},
            {"reuseWindow", "checked", false},
            {"textOnButtons", "checked", false},
            {"saveBackup", "checked", false},
            {"lineLengthLimit", "value", 80},
            {"lineLengthTolerance", "value", 80},
            {"maxConsecError", "value", 4},
            {"mandatoryFile", "text", "<not set>"},
            {"checkMandatory", "checked", false},
            {"templateFile", "text", "<not set>"},
            {"startWithTemplate", "checked", false},
            {"lineNumbers", "checked", false},
            {"contactName", "text", ""}};
        QcbsPreferences custom;
        custom.reuseWindow = custom.textOnButtons = custom.saveBackupFile = custom.checkMandatoryItems = true;
        custom.startWithTemplate = custom.lineNumbers = true;
        custom.lineLengthLimit = custom.lineLengthTolerance = 120;
        custom.maxConsecError = 9;
        custom.templateFilename = custom.mandatoryFilename = "/d/x.cif";
        custom.contactName = custom.contactFax = "someone";
        custom.write();
        QcbsPreferences prefs = QcbsPreferences::read();
        QcbsPrefsDialog dialog(&prefs, nullptr);
        for (const auto& [widget, property, value] : widgets)
            QVERIFY2(child<QObject>(dialog, widget)->property(property) != value, widget);
        dialog.defaultPressed();
        for (const auto& [widget, property, value] : widgets)
            QCOMPARE(child<QObject>(dialog, widget)->property(property), value);
        QCOMPARE(edited(prefs), edited(custom));
        QCOMPARE(edited(QcbsPreferences::read()), edited(custom));

        dialog.applyPressed();
        QCOMPARE(edited(QcbsPreferences::read()), edited(QcbsPreferences()));
        QCOMPARE(QcbsPreferences::read().contactFax, QStringLiteral("someone")); // no field in the dialog
    }

    void dictionaries_data()
    {
        QTest::addColumn<bool>("apply");
        QTest::addColumn<bool>("enabledAfter");
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("apply") << true << false << QVariant(false);
        QTest::newRow("cancel") << false << true << QVariant();
    }
    void dictionaries()
    {
        QFETCH(bool, apply);
        QFETCH(bool, enabledAfter);
        QFETCH(QVariant, stored);
        std::ifstream coreFile(sharedPath("dict/cif_core.dic").toStdString(), std::ios::binary);
        if (!coreFile)
            QSKIP("no core dictionary beside the repository");
        HCifConcreteDictionary core(new CifConcreteDictionary);
        HCifErrorList errors(new CifErrorList);
        core->read(coreFile, errors);
        HCifConcreteDictionary local(new CifConcreteDictionary);
        std::istringstream localText(
            "data_on_this_dictionary\n_dictionary_name local.dic\n_dictionary_version 1.0\n");
        local->read(localText, errors);
        HCifDictionaryPool all(new CifDictionaryPool);
        all->add(core);
        all->add(local);
        QcbsDictionarySettings settings(all);
        QcbsPreferences prefs;
        QcbsPrefsDialog dialog(&prefs, &settings);

        const QTreeWidget* list = child<QTreeWidget>(dialog, "dictionaries");
        QCOMPARE(list->topLevelItemCount(), 2);
        const QTreeWidgetItem* row = list->topLevelItem(0);
        QCOMPARE(QStringList({row->text(1), row->text(2), row->text(3)}),
                 QStringList({"cif_core.dic", "2.4.5", "2014-11-21"}));
        QCOMPARE(list->topLevelItem(1)->text(1), QStringLiteral("local.dic"));
        auto* box = qobject_cast<QcbsDictionaryCheckBox*>(list->itemWidget(list->topLevelItem(0), 0));
        QVERIFY(box && box->isChecked());

        box->click();
        QVERIFY(!settings.isEnabled(core));
        QVERIFY(settings.isEnabled(local));
        if (apply) {
            QVERIFY(emitted(dialog, [&] { dialog.applyPressed(); }).contains("parserPrefsChanged"));
        } else {
            dialog.reject();
        }
        QCOMPARE(settings.isEnabled(core), enabledAfter);
        QCOMPARE(box->isChecked(), enabledAfter);
        QCOMPARE(QSettings("NLDC", "Cifward").value("/Cifward/dictionaries/cif_core.dic2.4.5"), stored);
    }

    void styleRows_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QStringList>("styles");
        const auto row = [](const char* name, const char* label, const QStringList& styles) {
            QTest::newRow(name) << QString(name) << QString(label) << styles;
        };
        row("normal", "Normal text", {"Standard"});
        row("comments", "Comments", {"Comment"});
        row("blocks", "Data blocks", {"Type"});
        row("dataItems", "Data items", {"CoreDataItem"});
        row("customDataItems", "Custom Data items", {"CustomDataItem"});
        row("keywords", "Other keywords", {"Keyword"});
        row("textBlocks", "Text blocks", {"String"});
        row("specialChars", "Special characters", {"SpecialCharNormal"});
        row("specialSymbols", "Special symbols", {"SpecialCharSymbol"});
        row("supSub", "Super/subscript", {"Superscript", "Subscript"});
        row("markers", "Markers", {"SMarker"});
    }
    void styleRows()
    {
        QFETCH(QString, row);
        QFETCH(QString, label);
        QFETCH(QStringList, styles);
        ScriptedStylesDialog dialog;
        QCOMPARE(dialog.sampler()->objectName(), QStringLiteral("sampler"));
        QCOMPARE(dialog.sampler()->toPlainText(), QcbsStylesDialog::sampleText());
        bool labelled = false;
        for (const QLabel* shown : dialog.findChildren<QLabel*>())
            labelled = labelled || shown->text() == label;
        QVERIFY(labelled);
        auto* font = dialog.findChild<QPushButton*>(row + "Font");
        auto* colour = dialog.findChild<QPushButton*>(row + "Colour");
        QVERIFY(font && colour);
        QCOMPARE(font->text() + "/" + colour->text(), QStringLiteral("Change font/Change colour"));

        QSignalSpy changed(&dialog, &QcbsStylesDialog::userChangedStyle);
        const QcbsStyles shipped = QcbsStyleStore::shipped(QcbsStyleStore::fixedWidthBase());
        font->click();
        colour->click();
        QVERIFY(changed.count() >= 2);
        const QcbsStyles after = storedStyles();
        for (const QString& name : QcbsStyleStore::styleNames()) {
            const bool mapped = styles.contains(name);
            QCOMPARE(after[name].font.family(), (mapped ? dialog.font : shipped[name].font).family());
            QCOMPARE(after[name].font.pointSize(), mapped ? 17 : 12);
            QCOMPARE(after[name].color, mapped ? dialog.color : shipped[name].color);
        }
    }

    void setFontAll_data()
    {
        QTest::addColumn<int>("base");
        QTest::addColumn<QString>("press"); // empty: the question is answered without showing it
        QTest::addColumn<QString>("family");
        QTest::addColumn<int>("size");
        const auto row = [](const char* name, int base, const char* press, const QString& family, int size) {
            QTest::newRow(name) << base << QString(press) << family << size;
        };
        const QFont application = QApplication::font();
        row("cancel", QcbsStylesDialog::NoBase, "", "Times", 17);
        row("fixed", QcbsStylesDialog::FixedWidth, "", "Courier", 12);
        row("variable", QcbsStylesDialog::VariableWidth, "", application.family(),
            application.pointSize() > 0 ? application.pointSize() : 12);
        row("question: fixed", 0, " Fixed width", "Courier", 12);
        row("question: cancel", 0, "Cancel", "Times", 17);
    }
    void setFontAll()
    {
        QFETCH(int, base);
        QFETCH(QString, press);
        QFETCH(QString, family);
        QFETCH(int, size);
        QcbsStyleStore::writeFont("Standard", QFont("Times", 17));
        ScriptedStylesDialog dialog;
        dialog.base = QcbsStylesDialog::FontBase(base);
        dialog.askForBase = !press.isEmpty();
        QString question;
        QTimer answer;
        int tries = 0;
        connect(&answer, &QTimer::timeout, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) {
                if (++tries > 100)
                    answer.stop();
                return;
            }
            answer.stop();
            question = box->text();
            for (QAbstractButton* button : box->buttons())
                if (button->text() == press)
                    button->click();
            box->close(); // a missing button must not leave the test waiting
        });
        if (dialog.askForBase)
            answer.start(10);
        dialog.setFontAll();
        if (dialog.askForBase)
            QCOMPARE(question, QStringLiteral("Choose font style:"));
        const QcbsStyle standard = storedStyles()["Standard"];
        QCOMPARE(standard.font.family(), family);
        QCOMPARE(standard.font.pointSize(), size);
        QCOMPARE(dialog.sampler()->normalFont().family(), family);
    }

    void allTextFont()
    {
        ScriptedStylesDialog dialog;
        dialog.font = QFont("Times", 15);
        child<QPushButton>(dialog, "allFont")->click();
        const QcbsStyles shipped = QcbsStyleStore::shipped(QcbsStyleStore::fixedWidthBase());
        for (const QString& name : QcbsStyleStore::styleNames()) {
            const QFont font = storedStyles()[name].font;
            QCOMPARE(font.family(),
                     name == "SpecialCharSymbol" ? QStringLiteral("Symbol") : QStringLiteral("Times"));
            QCOMPARE(font.pointSize(), 15);
            QCOMPARE(font.bold(), shipped[name].font.bold());
            QCOMPARE(font.italic(), shipped[name].font.italic());
        }
        QCOMPARE(dialog.sampler()->normalFont().pointSize(), 15);
    }

    void stylePopup()
    {
        QcbsPreferences prefs;
        QcbsPrefsDialog dialog(&prefs, nullptr);
        child<QPushButton>(dialog, "styleButton")->click();
        dialog.stylePopup();
        const QList<QcbsStylesDialog*> shown = dialog.findChildren<QcbsStylesDialog*>();
        QCOMPARE(shown.size(), 1);
        QVERIFY(shown.first()->isVisible());
        QSignalSpy editor(&dialog, &QcbsPrefsDialog::editorPrefsChanged);
        shown.first()->saveStyleColor(Qt::red, "Standard");
        QCOMPARE(editor.count(), 1);
        QCOMPARE(storedStyles()["Standard"].color, QColor(Qt::red));
    }

private:
    IsolatedSettings isolated_;
};

QTEST_MAIN(QcbsPrefsDialogTest)
#include "QcbsPrefsDialogTest.moc"
