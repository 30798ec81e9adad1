#include "QcbsCifBoxView.h"

#include "GuiTestSupport.h"
#include "QcbsCifBoxBlockItem.h"
#include "QcbsCifBoxDataItem.h"
#include "QcbsCifIcons.h"
#include "QcbsDataItemInfo.h"
#include "QcbsEditDataDialogue.h"
#include "QcbsRichTextEdit.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTextBlock>

namespace {

// A real file whose single block has a passing and a failing single item, a loop whose first
// value fails and one whose first value passes, and lacks many names of the core dictionary.
const char* const corpusFile = "corpus/cod/2001253-not-numeric-limits.cif";

// A row of the box view, found as a user finds it: by opening the block and the category.
struct RowCase {
    QString category, item; // no item: the category's row; no category: the block's row
    int icon;               // -1 for a folder
    QStringList menu;
    QString action, typed;
    // What the action leaves: the line the cursor stands on, or a line of the text, or the name
    // of the help window or of the clipboard; and the row's picture after the next check.
    QString result;
    int iconAfter;
};

QcbsCifBoxItem* child(QTreeWidgetItem* parent, const QString& name)
{
    parent->setExpanded(true);
    for (int i = 0; i < parent->childCount(); ++i)
        if (auto* box = static_cast<QcbsCifBoxItem*>(parent->child(i)); box->name() == name)
            return box;
    return nullptr;
}

QcbsCifBoxItem* findRow(QcbsCifBoxView* view, const QString& category, const QString& item)
{
    auto* block = static_cast<QcbsCifBoxItem*>(view->topLevelItem(0));
    if (category.isEmpty())
        return block;
    QcbsCifBoxItem* folder = child(block, category);
    return folder && !item.isEmpty() ? child(folder, item) : folder;
}

int iconOf(QcbsCifBoxItem* row)
{
    auto* data = dynamic_cast<QcbsCifBoxDataItem*>(row);
    return data ? data->iconIndex() : -1;
}

QString cursorLine(QcbsMainWindow* window)
{
    return QString::number(window->editor()->textCursor().blockNumber() + 1);
}

} // namespace

Q_DECLARE_METATYPE(RowCase)

class QcbsCifBoxViewTest : public QObject {
    Q_OBJECT
    WindowFixture fx_;

private slots:
    void init() { fx_.reset(); }
    void cleanup() { fx_.reset(); }

    void rowsAndTheirMenus_data()
    {
        const QStringList present = {"Go to item", "Item help", "Copy item name", "Set data item value"};
        const QStringList looped = {"Go to item", "Item help", "Copy item name"};
        const QStringList missing = {"Item help", "Copy item name", "Paste into editor",
                                     "Set data item value"};
        addRows<RowCase>({
            {"block", {"", "", -1, {"Go to block"}, "Go to block", "", "15", -1}},
            {"category", {"_cell_[]", "", -1, {"Item help"}, "Item help", "", "_cell_[]", -1}},
            {"passing value", {"_cell_[]", "_cell_length_a", 0, present, "Go to item", "", "51", 0}},
            {"failing value mended",
             {"_diffrn_radiation_wavelength_[]", "_diffrn_radiation_wavelength", 3, present,
              "Set data item value", "1.5418", "_diffrn_radiation_wavelength     1.5418", 0}},
            {"loop with a failing first value",
             {"_atom_site_[]", "_atom_site_thermal_displace_type", 3, looped, "Copy item name", "",
              "_atom_site_thermal_displace_type", 3}},
            {"loop with a passing first value",
             {"_atom_site_[]", "_atom_site_fract_x", 7, looped, "Item help", "", "_atom_site_fract_x", 7}},
            {"missing item given a value",
             {"_exptl_crystal_[]", "_exptl_crystal_colour_primary", 6, missing, "Set data item value",
              "yellow", "_exptl_crystal_colour_primary    yellow", 0}},
            {"missing item pasted",
             {"_exptl_crystal_[]", "_exptl_crystal_colour_primary", 6, missing, "Paste into editor", "",
              "_exptl_crystal_colour_primary", 6}},
            {"help on F1", {"_cell_[]", "_cell_volume", 0, present, "F1", "", "_cell_volume", 0}},
        });
    }
    void rowsAndTheirMenus()
    {
        QFETCH(RowCase, row);
        ScriptedWindow* window = fx_.newWindow();
        QVERIFY(window->fileOpen(sharedPath(QString::fromLatin1(corpusFile)), false));
        const QString original = window->editor()->toPlainText();
        window->toggleBoxView();
        QcbsCifBoxView* view = window->boxView();
        QVERIFY(view->isVisible());
        QCOMPARE(view->topLevelItemCount(), 1);

        QcbsCifBoxItem* found = findRow(view, row.category, row.item);
        QVERIFY(found);
        QVERIFY(!child(findRow(view, "", ""), QStringLiteral("_category_overview_[]")));
        QCOMPARE(iconOf(found), row.icon);
        QCOMPARE(found->foreground(0).color() == QColor(Qt::gray), row.icon == QcbsCifIcons::MissingItem);
        QMenu menu;
        found->contextMenu(menu, *view);
        QStringList entries;
        for (QAction* action : menu.actions())
            entries << action->text();
        QCOMPARE(entries, row.menu);

        window->editor()->moveCursor(QTextCursor::End);
        if (row.action == QLatin1String("F1")) {
            view->setCurrentItem(found);
            QTest::keyClick(view, Qt::Key_F1);
        } else {
            for (QAction* action : menu.actions())
                if (action->text() == row.action)
                    action->trigger();
        }

        if (row.action.startsWith(QLatin1String("Go to"))) {
            QCOMPARE(cursorLine(window), row.result);
        } else if (row.action == QLatin1String("Copy item name")) {
            QCOMPARE(QApplication::clipboard()->text(), row.result);
        } else if (row.action == QLatin1String("Item help") || row.action == QLatin1String("F1")) {
            auto* help = window->findChild<QcbsDataItemInfo*>();
            QVERIFY(help && help->isVisible());
            QCOMPARE(help->dataItemName(), row.result);
        } else if (row.action == QLatin1String("Paste into editor")) {
            QVERIFY(window->editor()->toPlainText().endsWith(row.result));
        } else {
            auto* dialog = window->findChild<QcbsEditDataDialogue*>();
            QVERIFY(dialog && dialog->isVisible());
            if (auto* combo = dialog->findChild<QComboBox*>())
                combo->setEditText(row.typed);
            else
                dialog->findChild<QLineEdit*>()->setText(row.typed);
            for (QPushButton* button : dialog->findChildren<QPushButton*>())
                if (button->text() == QLatin1String("OK"))
                    button->click();
            QVERIFY(window->editor()->toPlainText().split('\n').contains(row.result));
            // The text was checked again: the findings and the tree follow it.
            QVERIFY(window->editor()->parsed());
            for (const CifError& finding : *window->document()->errors())
                QVERIFY2(!QString::fromStdString(finding.message()).contains(row.item),
                         finding.text().c_str());
        }
        if (row.action != QLatin1String("Paste into editor") && !row.action.startsWith(QLatin1String("Set")))
            QCOMPARE(window->editor()->toPlainText(), original);
        if (row.iconAfter >= 0) {
            window->reparse();
            QCOMPARE(iconOf(findRow(window->boxView(), row.category, row.item)), row.iconAfter);
        }
    }

    // A window with no file has no block to show, and a file whose block is gone tells so.
    void nothingToShow()
    {
        ScriptedWindow* window = fx_.newWindow();
        window->toggleBoxView();
        QCOMPARE(window->boxView()->topLevelItemCount(), 1);
        QCOMPARE(window->boxView()->topLevelItem(0)->text(0), QStringLiteral("(no items to show)"));
        QVERIFY(window->fileOpen(sharedPath(QString::fromLatin1(corpusFile)), false));
        window->setDataItem(QStringLiteral("data_gone"), QStringLiteral("_cell_length_a"));
        QVERIFY(!window->findChild<QcbsEditDataDialogue*>());
        QVERIFY(window->statusBar()->currentMessage().contains(QStringLiteral("data_gone")));
    }
};

QTEST_MAIN(QcbsCifBoxViewTest)
#include "QcbsCifBoxViewTest.moc"
