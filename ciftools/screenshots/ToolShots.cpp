// Writes screenshots of each CIF tool in use on real CIFs of the shared corpus, for looking at
// them as a user would: the box view with missing, looped and failing names; the item help; the
// value dialog with its list open; the loop editor on 4hir.cif's atom list; the merge dialog; the
// find and replace dialogs over the editor; and the box view's pictures at several sizes.
//
//   xvfb-run -a -s "-screen 0 1400x1000x24" cifward-tool-shots OUTDIR

#include "IsolatedSettings.h"
#include "QcbsAppState.h"
#include "QcbsCifBoxItem.h"
#include "QcbsCifBoxView.h"
#include "QcbsCifCombineDialogue.h"
#include "QcbsCifIcons.h"
#include "QcbsDataItemInfo.h"
#include "QcbsEditDataDialogue.h"
#include "QcbsFindDialog.h"
#include "QcbsLoopTable.h"
#include "QcbsLoopTableEditorImpl.h"
#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsReplaceDialog.h"
#include "QcbsRichTextEdit.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QTextBlock>
#include <cstdio>

namespace {

const QString corpus = QStringLiteral(CIFWARD_SHARED_DIR "/corpus/");

void settle()
{
    for (int i = 0; i < 10; ++i)
        QApplication::processEvents();
}

bool save(const QPixmap& pixmap, const QString& path)
{
    if (!pixmap.save(path)) {
        std::fprintf(stderr, "cifward-tool-shots: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

bool grabScreen(const QString& path, const QRect& area)
{
    settle();
    const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
    return save(screen.copy(area), path);
}

void moveTo(QcbsMainWindow* window, int line)
{
    QcbsRichTextEdit* editor = window->editor();
    editor->setTextCursor(QTextCursor(editor->document()->findBlockByNumber(line - 1)));
    editor->centerCursor();
}

QcbsCifBoxItem* openRow(QTreeWidgetItem* parent, const QString& name)
{
    parent->setExpanded(true);
    for (int i = 0; i < parent->childCount(); ++i)
        if (static_cast<QcbsCifBoxItem*>(parent->child(i))->name() == name) {
            parent->child(i)->setExpanded(true);
            return static_cast<QcbsCifBoxItem*>(parent->child(i));
        }
    return nullptr;
}

// The eight pictures at 16 and 32 pixels, and at 16 pixels on a screen of twice the density.
QPixmap iconSheet()
{
    QPixmap sheet(8 * 40 + 20, 130);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int i = 0; i < QcbsCifIcons::BoxIconCount; ++i) {
        const QIcon icon = QcbsCifIcons::boxIcon(i);
        painter.drawPixmap(10 + 40 * i, 10, icon.pixmap(16, 16));
        painter.drawPixmap(10 + 40 * i, 35, icon.pixmap(32, 32));
        QPixmap sharp = icon.pixmap(QSize(16, 16), 2.0);
        painter.drawPixmap(10 + 40 * i, 75,
                           sharp.scaled(32, 32, Qt::KeepAspectRatio, Qt::FastTransformation));
        painter.drawText(10 + 40 * i, 122, QString::number(i));
    }
    return sheet;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: cifward-tool-shots OUTDIR\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const IsolatedSettings settings;
    if (!QDir().mkpath(out))
        return 2;
    bool ok = save(iconSheet(), out + QStringLiteral("/icons.png"));

    HQcbsAppState state(new QcbsAppState(QFileInfo(QCoreApplication::applicationFilePath())));
    auto* window = new QcbsMainWindow(state);
    window->setGeometry(10, 10, 1200, 860);
    window->show();
    settle();
    if (!window->loadFile(corpus + QStringLiteral("cod/2001253-not-numeric-limits.cif"), true, false)) {
        std::fprintf(stderr, "cifward-tool-shots: the corpus is not beside the repository\n");
        return 1;
    }

    // The box view: a loop whose first value fails, looped and missing names, a failing value.
    window->toggleBoxView();
    QcbsCifBoxView* view = window->boxView();
    auto* block = view->topLevelItem(0);
    openRow(block, QStringLiteral("_exptl_crystal_[]"));
    QcbsCifBoxItem* atoms = openRow(block, QStringLiteral("_atom_site_[]"));
    for (int i = 0; i < atoms->childCount(); ++i)
        if (static_cast<QcbsCifBoxItem*>(atoms->child(i))->name() ==
            QLatin1String("_atom_site_thermal_displace_type")) {
            view->setCurrentItem(atoms->child(i));
            view->scrollToItem(atoms->child(i), QAbstractItemView::PositionAtCenter);
        }
    moveTo(window, 130);
    window->resize(1200, 860);
    settle();
    ok &= save(window->grab(), out + QStringLiteral("/box-view.png"));

    // The item help of a name with a list of values, opened from the box view.
    window->dataitemHelp(QStringLiteral("_atom_site_thermal_displace_type"));
    settle();
    if (auto* help = window->findChild<QcbsDataItemInfo*>()) {
        help->resize(640, 520);
        settle();
        ok &= save(help->grab(), out + QStringLiteral("/item-help.png"));
        help->close();
    }

    // The value dialog of an enumerated name, with its list open.
    window->setDataItem(QStringLiteral("data_2001253"), QStringLiteral("_exptl_absorpt_correction_type"));
    settle();
    if (auto* dialog = window->findChild<QcbsEditDataDialogue*>()) {
        dialog->move(300, 200);
        settle();
        ok &= save(dialog->grab(), out + QStringLiteral("/value-dialog.png"));
        dialog->findChild<QComboBox*>()->showPopup();
        ok &= grabScreen(out + QStringLiteral("/value-dialog-list.png"),
                         dialog->frameGeometry().adjusted(0, 0, 0, 260));
        dialog->close();
    }

    // The loop editor on a loop whose values fail their check, a failing cell current.
    moveTo(window, 125);
    window->loopEd();
    settle();
    if (auto* loops = window->findChild<QcbsLoopTableEditorImpl*>()) {
        loops->resize(1000, 560);
        loops->findChild<QPushButton*>(QStringLiteral("nextFailingButton"))->click();
        settle();
        ok &= save(loops->grab(), out + QStringLiteral("/loop-editor-marks.png"));
        loops->close();
    }

    // The merge dialog over the template's two blocks.
    QcbsMainWindow::preferences().templateFilename = corpus + QStringLiteral("cod/merge_1b.cif");
    moveTo(window, 60);
    window->combine();
    settle();
    if (auto* merge = window->findChild<QcbsCifCombineDialogue*>()) {
        merge->table()->item(1, 0)->setCheckState(Qt::Checked);
        settle();
        ok &= save(merge->grab(), out + QStringLiteral("/merge-dialog.png"));
        merge->close();
    }

    // Find over the editor, with a match selected; then replace.
    moveTo(window, 1);
    window->editFind();
    QcbsFindDialog* find = QcbsFindDialog::existing();
    find->move(620, 300);
    find->findCombo()->setEditText(QStringLiteral("Beq"));
    find->findChild<QPushButton*>(QStringLiteral("buttonFind"))->click();
    ok &= grabScreen(out + QStringLiteral("/find.png"), window->frameGeometry());
    window->editReplace();
    QcbsReplaceDialog* replace = QcbsReplaceDialog::existing();
    replace->move(620, 300);
    replace->findCombo()->setEditText(QStringLiteral("Beq"));
    replace->replaceCombo()->setEditText(QStringLiteral("Uiso"));
    ok &= grabScreen(out + QStringLiteral("/replace.png"), window->frameGeometry());
    replace->close();

    // The loop editor on the largest loop of a real file: 4hir.cif's atom list.
    window->editor()->document()->setModified(false);
    if (!window->loadFile(corpus + QStringLiteral("iucr-ciftest/real/4hir.cif"), true, false))
        return 1;
    const QString text = window->editor()->toPlainText();
    moveTo(window, int(text.left(text.indexOf(QStringLiteral("\n_atom_site.label_seq_id"))).count('\n')) + 1);
    window->loopEd();
    settle();
    if (auto* loops = window->findChild<QcbsLoopTableEditorImpl*>()) {
        loops->resize(1150, 640);
        QcbsLoopTable* table = loops->table();
        table->model()->setData(table->model()->index(2, 8), QStringLiteral("?"));
        table->model()->setData(table->model()->index(4, 11), QStringLiteral("."));
        table->model()->setData(table->model()->index(5, 14), QStringLiteral("2.5"));
        table->setCurrentIndex(table->model()->index(5, 14));
        settle();
        ok &= save(loops->grab(), out + QStringLiteral("/loop-editor.png"));
        loops->close();
    }
    window->editor()->document()->setModified(false);
    window->close();
    return ok ? 0 : 1;
}
