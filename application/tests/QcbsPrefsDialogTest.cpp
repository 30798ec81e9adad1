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

} // namespace

Q_DECLARE_METATYPE(Change)

class QcbsPrefsDialogTest : public QObject {
    Q_OBJECT
private slots:
    void init() { isolated_.clear(); }
    void applyEmitsChangedGroups_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("expected");
        const QString editor = "editorPrefsChanged", window = "mainWinPrefsChanged",
                      parser = "parserPrefsChanged", mandatory = "mandatoryPrefsChanged",
                      prefs = "prefsChanged";
        QTest::newRow("nothing") << Change([](ScriptedPrefsDialog&) {}) << QStringList{prefs};
        QTest::newRow("reuse window") << check("reuseWindow") << QStringList{window, prefs};
        QTest::newRow("tolerance") << spin("lineLengthTolerance", 10) << QStringList{parser, prefs};
        QTest::newRow("template file")
            << browse(&QcbsPrefsDialog::browseForTemplate, "/d/t.cif") << QStringList{editor, prefs};
        QTest::newRow("mandatory file")
            << browse(&QcbsPrefsDialog::browseForMandatory, "/d/m.txt") << QStringList{mandatory, prefs};
        QTest::newRow("line numbers") << check("lineNumbers") << QStringList{editor, prefs};
        QTest::newRow("changed and back") << Change([](ScriptedPrefsDialog& d) {
            check("lineNumbers", true)(d);
            check("lineNumbers", false)(d);
        }) << QStringList{prefs};
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
        HCifErrorList errors(new CifErrorList);
        HCifConcreteDictionary core(new CifConcreteDictionary), local(new CifConcreteDictionary);
        std::istringstream coreText("data_h\n_dictionary_name cif_core.dic\n_dictionary_version 2.4.5\n"
                                    "_dictionary_update 2014-11-21\n"),
            localText("data_h\n_dictionary_name local.dic\n_dictionary_version 1.0\n");
        core->read(coreText, errors);
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

private:
    IsolatedSettings isolated_;
};

QTEST_MAIN(QcbsPrefsDialogTest)
#include "QcbsPrefsDialogTest.moc"
