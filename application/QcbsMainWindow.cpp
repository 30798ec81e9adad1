// The window itself: its construction, actions, menus and toolbars, panes, the tools enabled by
// state, the status bar and caption, help, and the events it handles. The document's life, the
// checks and the editing routes live in the QcbsMainWindow*.cpp files beside this one.

#include "QcbsMainWindow.h"

#include "CifMandatoryItems.h"
#include "Logger.h"
#include "QcbsApplication.h"
#include "QcbsCifBoxView.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsErrorListView.h"
#include "QcbsFindDialog.h"
#include "QcbsLineNumberView.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsMainWindowShared.h"
#include "QcbsOutputPane.h"
#include "QcbsPreferences.h"
#include "QcbsReplaceDialog.h"
#include "QcbsRichTextEdit.h"
#include "QcbsSpecialCharDialog.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QUrl>

using namespace mainwindow;

namespace {

const QString fileFilter = QStringLiteral("CIF (*.cif);;All Files (*)");

} // namespace

// --- construction -------------------------------------------------------------------------------

QcbsMainWindow::QcbsMainWindow(const HQcbsAppState& state, bool withDocument, QWidget* parent)
    : QMainWindow(parent), state_(state)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("mainwindow"));
    ++shared().windowCount;
    if (!shared().recentMenu) {
        shared().recentMenu = new QMenu(QStringLiteral("&Recent Files"));
        rebuildRecentMenu();
    }
    if (!shared().lastActive)
        shared().lastActive = this;

    setCaption(QString());
    readPreferences();
    setMinimumSize(400, 300);
    resize(preferences().windowWidth, preferences().windowHeight);
    buildActions();
    buildPanes();
    buildMenusAndToolBars();
    applyTextOnButtons();
    loadMandatoryDataItemSettings();
    enableEditorTools(false);
    enableParseTools(false);
    enableFileTools(true);
    setAcceptDrops(true);
    connectEditor();

    connect(state_->dictionaryLoader(), &QcbsDictionaryLoader::outputMessageRequest, this,
            qOverload<const QString&, bool>(&QcbsMainWindow::writeToOutputPane));
    state_->loadDictionaries();
    editor_->highlighter()->setDictionary(state_->activeDictionaries());
    initialiseEditorSettings();
    enableTools(editorPage_);

    if (withDocument)
        fileNew();
}

QcbsMainWindow::~QcbsMainWindow()
{
    // The shared menu has no parent: it goes with the last window, before the application does.
    if (--shared().windowCount == 0)
        delete shared().recentMenu;
}

QcbsPreferences& QcbsMainWindow::preferences()
{
    static QcbsPreferences values;
    return values;
}

QStringList QcbsMainWindow::recentFiles()
{
    QStringList paths;
    for (const RecentEntry& entry : shared().recent)
        if (entry.id != 0)
            paths << entry.path;
    return paths;
}

QcbsMainWindow* QcbsMainWindow::lastActive()
{
    return shared().lastActive;
}

void QcbsMainWindow::readPreferences()
{
    QcbsPreferences& prefs = preferences();
    prefs = QcbsPreferences::read();
    state_->showLineNumbers = prefs.lineNumbers;
    state_->saveBackupFile = prefs.saveBackupFile;
    state_->lineLengthLimit = prefs.lineLengthLimit;
    state_->lineLengthTolerance = prefs.lineLengthTolerance;
    QcbsRichTextEdit::setTemplateFile(
        prefs.startWithTemplate || !prefs.templateFilename.isEmpty() ? prefs.templateFilename : QString());
    for (const QString& path : prefs.recentFiles)
        addRecentFile(path);
    if (shared().recent.isEmpty()) {
        shared().recent.append({0, emptyRecent});
        rebuildRecentMenu();
    }
}

QAction* QcbsMainWindow::makeAction(const char* objectName, const QString& menuText, const QString& toolText,
                                    const QString& tip, QChar key)
{
    auto* action = new QAction(menuText, this);
    action->setObjectName(QLatin1String(objectName));
    if (!toolText.isEmpty())
        action->setIconText(toolText);
    if (!tip.isEmpty())
        action->setToolTip(tip);
    if (!key.isNull())
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + key));
    return action;
}

void QcbsMainWindow::buildActions()
{
    QStyle* look = style();
    fileNewAction_ = makeAction("fileNew", "&New", "New file", {}, 'N');
    fileNewAction_->setIcon(look->standardIcon(QStyle::SP_FileIcon));
    fileOpenAction_ = makeAction("fileOpen", "&Open...", "Open", {}, 'O');
    fileOpenAction_->setIcon(look->standardIcon(QStyle::SP_DialogOpenButton));
    newWindowAction_ = makeAction("newWindow", "New Window", "New Window", {}, {});
    fileSaveAction_ = makeAction("fileSave", "&Save...", "Save", {}, 'S');
    fileSaveAction_->setIcon(look->standardIcon(QStyle::SP_DialogSaveButton));
    fileSaveAsAction_ = makeAction("fileSaveAs", "Save &As...", "Save As", {}, {});
    filePrintAction_ = makeAction("filePrint", "&Print...", "Print", {}, 'P');
    fileCloseAction_ = makeAction("fileClose", "&Close File", "Close", {}, 'W');
    fileExitAction_ = makeAction("fileExit", "E&xit", "Exit", {}, 'Q');

    undoAction_ = makeAction("editUndo", "&Undo", "Undo", {}, 'Z');
    redoAction_ = makeAction("edotRedo", "&Redo", "Redo", {}, 'Y');
    copyAction_ = makeAction("editCopy", "&Copy", "Copy", {}, 'C');
    cutAction_ = makeAction("editCut", "Cu&t", "Cut", {}, 'X');
    pasteAction_ = makeAction("editPaste", "&Paste", "Paste", {}, 'V');
    insertAction_ = makeAction("editInsert", "Insert File", "Insert File", {}, {});
    templateAction_ = makeAction("editTemplate", "Insert Template", "Template", {}, {});
    combineAction_ = makeAction("combi", "Merge Template", "Combine", "Merge Template into CIF block", {});
    selectAllAction_ = makeAction("editSelectall", "Select A&ll", "Select All", {}, 'A');
    zoomInAction_ = makeAction("editZoomin", "Zoom in", "Zoom in", {}, {});
    zoomOutAction_ = makeAction("editZoomout", "Zoom out", "Zoom out", {}, {});
    prefsAction_ = makeAction("editPrefs", "Pre&ferences...", "Preferences", {}, {});

    checkAction_ = makeAction("reparse", "Chec&k", "Check", "Check CIF for errors (Ctrl+K)", 'K');
    itemHelpAction_ =
        makeAction("ihelp", "&Item Help", "Item Help", "Pop-up Help for DataItems (Ctrl+I)", 'I');
    browserAction_ = makeAction("ihelp", "&Browser", "Browser", "Browse data and dictionary (Ctrl+B)", 'B');
    publicationWizardAction_ =
        makeAction("wizpubl", "Publication Wizard", "Publication Wizard", "Publication Data Wizard", {});
    crystalWizardAction_ =
        makeAction("wizcrystal", "Crystal Wizard", "Crystal Wizard", "Crystal Data Wizard", {});
    editLoopAction_ = makeAction("edloop", "Edit Loop", "Edit Loop", "Edit Loop (Ctrl+L)", 'L');
    newLoopAction_ = makeAction("newloop", "New Loop", "New Loop", "New Loop", {});

    findAction_ = makeAction("find", "&Find...", "Find", {}, 'F');
    findPreviousAction_ = makeAction("find previous", "&Find previous", {}, "Find previous", {});
    findNextAction_ = makeAction("find next", "Find &next", {}, "Find next", {});
    // The usual keys for searching again without the dialog.
    findNextAction_->setShortcut(QKeySequence(Qt::Key_F3));
    findPreviousAction_->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F3));
    replaceAction_ = makeAction("replace", "&Replace...", "Replace", {}, 'R');
    gotoLineAction_ = makeAction("go to line", "&Go to line...", "Go to line", {}, 'G');

    specialCharAction_ = makeAction("specialChars", "Special Characters...", {}, {}, {});
    aboutAction_ = makeAction("about", "About", {}, {}, {});
    helpAction_ = makeAction("help", programText() + QStringLiteral(" documentation"), {}, {}, {});
    homePageAction_ = makeAction("homePage", programText() + QStringLiteral(" home page"), {}, {}, {});
    lumeniaAction_ = makeAction("lumenia", "Open in &Lumenia", "Lumenia", "Open in Lumenia", {});

    const auto bind = [this](QAction* action, auto slot) {
        connect(action, &QAction::triggered, this, slot);
    };
    bind(fileNewAction_, qOverload<>(&QcbsMainWindow::fileNew));
    bind(fileOpenAction_, qOverload<>(&QcbsMainWindow::fileOpen));
    bind(newWindowAction_, &QcbsMainWindow::newWindow);
    bind(fileSaveAction_, &QcbsMainWindow::fileSave);
    bind(fileSaveAsAction_, &QcbsMainWindow::fileSaveAs);
    bind(filePrintAction_, &QcbsMainWindow::filePrint);
    bind(fileCloseAction_, &QcbsMainWindow::fileCloseRequested);
    bind(fileExitAction_, &QcbsMainWindow::fileExit);
    bind(undoAction_, &QcbsMainWindow::editUndo);
    bind(redoAction_, &QcbsMainWindow::editRedo);
    bind(copyAction_, &QcbsMainWindow::editCopy);
    bind(cutAction_, &QcbsMainWindow::editCut);
    bind(pasteAction_, &QcbsMainWindow::editPaste);
    bind(insertAction_, &QcbsMainWindow::editInsert);
    bind(templateAction_, &QcbsMainWindow::editInsertTemplate);
    bind(combineAction_, &QcbsMainWindow::combine);
    bind(selectAllAction_, &QcbsMainWindow::editSelectall);
    bind(zoomInAction_, &QcbsMainWindow::editZoomin);
    bind(zoomOutAction_, &QcbsMainWindow::editZoomout);
    bind(prefsAction_, &QcbsMainWindow::editPrefs);
    bind(checkAction_, &QcbsMainWindow::reparse);
    bind(itemHelpAction_, qOverload<>(&QcbsMainWindow::dataitemHelp));
    bind(browserAction_, &QcbsMainWindow::toggleBoxView);
    bind(publicationWizardAction_, &QcbsMainWindow::publicationWizard);
    bind(crystalWizardAction_, &QcbsMainWindow::crystalWizard);
    bind(editLoopAction_, &QcbsMainWindow::loopEd);
    bind(newLoopAction_, &QcbsMainWindow::loopNew);
    bind(findAction_, &QcbsMainWindow::editFind);
    bind(findPreviousAction_, &QcbsMainWindow::editFindPrevious);
    bind(findNextAction_, &QcbsMainWindow::editFindNext);
    bind(replaceAction_, &QcbsMainWindow::editReplace);
    bind(gotoLineAction_, &QcbsMainWindow::editGotoLine);
    bind(specialCharAction_, &QcbsMainWindow::specialCharPopUp);
    bind(aboutAction_, &QcbsMainWindow::about);
    bind(helpAction_, &QcbsMainWindow::help);
    bind(homePageAction_, &QcbsMainWindow::cifwardHomePage);
    bind(lumeniaAction_, &QcbsMainWindow::hg);
}

void QcbsMainWindow::buildMenusAndToolBars()
{
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->addActions({fileNewAction_, fileOpenAction_, newWindowAction_, fileSaveAction_, fileSaveAsAction_,
                      filePrintAction_});
    file->addSeparator();
    file->addMenu(shared().recentMenu);
    connect(shared().recentMenu, &QMenu::triggered, this,
            [this](QAction* action) { fileLoadRecent(action->data().toInt()); });
    file->addSeparator();
    file->addActions({fileCloseAction_, fileExitAction_});

    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->addActions({undoAction_, redoAction_});
    edit->addSeparator();
    edit->addActions({copyAction_, cutAction_, pasteAction_});
    edit->addSeparator();
    edit->addActions({insertAction_, templateAction_, combineAction_, selectAllAction_});
    edit->addSeparator();
    edit->addActions({zoomInAction_, zoomOutAction_, prefsAction_});

    QMenu* search = menuBar()->addMenu(QStringLiteral("&Search"));
    search->addActions({findAction_, findPreviousAction_, findNextAction_, replaceAction_, gotoLineAction_});

    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Tools"));
    tools->addActions({checkAction_, itemHelpAction_, browserAction_});
    tools->addSeparator();
    tools->addActions({publicationWizardAction_, crystalWizardAction_, editLoopAction_, newLoopAction_});
    tools->addSeparator();
    tools->addAction(lumeniaAction_);

    QMenu* helpMenu = menuBar()->addMenu(QStringLiteral("&Help"));
    helpMenu->addActions({specialCharAction_, aboutAction_, helpAction_, homePageAction_});

    const auto addBar = [this](const QString& name, const QList<QAction*>& actions) {
        QToolBar* bar = addToolBar(name);
        bar->setObjectName(name);
        bar->addActions(actions);
        toolBars_ << bar;
        return bar;
    };
    addBar(QStringLiteral("File Tools"),
           {fileNewAction_, fileOpenAction_, fileSaveAction_, filePrintAction_});
    addBar(QStringLiteral("Editor Tools"),
           {undoAction_, redoAction_, copyAction_, cutAction_, pasteAction_, zoomInAction_, zoomOutAction_});
    QToolBar* cifBar = addBar(QStringLiteral("Cif Tools"),
                              {checkAction_, itemHelpAction_, browserAction_, publicationWizardAction_,
                               crystalWizardAction_, editLoopAction_, newLoopAction_, lumeniaAction_});
    cifBar->addWidget(blockCombo_);
    addBar(QStringLiteral("Search Tools"),
           {findAction_, findPreviousAction_, findNextAction_, replaceAction_, gotoLineAction_});
}

void QcbsMainWindow::buildPanes()
{
    tabs_ = new QTabWidget;
    tabs_->setTabPosition(QTabWidget::South);
    editorPage_ = new QSplitter(Qt::Horizontal);
    boxView_ = new QcbsCifBoxView(editorPage_);
    boxView_->setVisible(boxViewVisible_);
    numberedEditor_ = new QcbsLineNumberedTextEdit(editorPage_);
    editor_ = numberedEditor_->editor();
    editorPage_->setStretchFactor(1, 1);
    auto* visualiser = new QLabel(QStringLiteral("No structure is shown."));
    visualiser->setAlignment(Qt::AlignCenter);
    visualiserPage_ = visualiser;
    tabs_->addTab(editorPage_, QStringLiteral("  Editor  "));
    tabs_->addTab(visualiserPage_, QStringLiteral("  Visualiser  "));

    lowerTabs_ = new QTabWidget;
    errorList_ = new QcbsErrorListView;
    errorList_->setMinimumHeight(150);
    outputPane_ = new QcbsOutputPane;
    lowerTabs_->addTab(errorList_, QStringLiteral("Errors"));
    lowerTabs_->addTab(outputPane_, QStringLiteral("Output"));

    auto* central = new QSplitter(Qt::Vertical);
    central->addWidget(tabs_);
    central->addWidget(lowerTabs_);
    central->setStretchFactor(0, 3);
    // The text is what the user came for: the lists start at their minimum height.
    central->setSizes({preferences().windowHeight, errorList_->minimumHeight()});
    setCentralWidget(central);

    blockCombo_ = new QComboBox;
    blockCombo_->setToolTip(QStringLiteral("Click to go to block. Re-check CIF to update list"));
    blockCombo_->setMinimumContentsLength(QStringLiteral("data_typical_block_in_a_cif").size());
    blockCombo_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    updateBlockCombo(nullptr);

    progress_ = new QProgressBar;
    progress_->setFixedWidth(200);
    positionLabel_ = new QLabel;
    statusBar()->addPermanentWidget(positionLabel_);
    statusBar()->addPermanentWidget(progress_);

    connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) {
        QWidget* page = tabs_->widget(index);
        enableTools(page);
        enableVisualiser(page);
        setCaption(page);
        restoreStatusBarMessage(page);
    });
    connect(errorList_, &QcbsErrorListView::helpRequest, this, &QcbsMainWindow::helpFile);
    connect(errorList_, &QcbsErrorListView::requestHighlightLine, editor_,
            qOverload<int, int, bool>(&QcbsRichTextEdit::setErrorHighlighting));
    connect(blockCombo_, qOverload<int>(&QComboBox::activated), this, &QcbsMainWindow::blockComboSelected);

    connect(boxView_, qOverload<const QString&, int>(&QcbsCifBoxView::selectedDataItem), this,
            qOverload<const QString&, int>(&QcbsMainWindow::editorJumpToItemHelper));
    connect(boxView_, &QcbsCifBoxView::goToBlock, this, &QcbsMainWindow::editorJumpToBlockHelper);
    connect(boxView_, &QcbsCifBoxView::datItemHelpRequest, this,
            qOverload<const QString&>(&QcbsMainWindow::dataitemHelp));
    connect(boxView_, &QcbsCifBoxView::dataItemSetRequest, this, &QcbsMainWindow::setDataItem);
    connect(boxView_, &QcbsCifBoxView::insertTextRequest, this, &QcbsMainWindow::editorInsertTextHelper);
}

void QcbsMainWindow::connectEditor()
{
    connect(editor_, &QPlainTextEdit::cursorPositionChanged, this, &QcbsMainWindow::editorCursorMoved);
    connect(editor_, &QcbsRichTextEdit::cursorLineChanged, this, &QcbsMainWindow::editorLineChanged);
    connect(editor_, &QPlainTextEdit::textChanged, this, &QcbsMainWindow::editorTextChanged);
    connect(editor_, &QPlainTextEdit::modificationChanged, this, &QcbsMainWindow::statusLineNumber);
    connect(editor_, &QcbsRichTextEdit::textSizeChanged, this, &QcbsMainWindow::editorTextSizeChanged);
    connect(editor_, &QcbsRichTextEdit::statusBarMessageRequest, this,
            qOverload<const QString&>(&QcbsMainWindow::statusBarMessage));
    connect(editor_, &QcbsRichTextEdit::requestGotoLine, editor_,
            qOverload<int, const QString&>(&QcbsRichTextEdit::gotoLine));
    connect(editor_, &QcbsRichTextEdit::requestDataitemHelp, this,
            qOverload<const QString&>(&QcbsMainWindow::dataitemHelp));
    connect(editor_, &QcbsRichTextEdit::dropEventRequest, this, &QcbsMainWindow::processDropEvent);
    editor_->viewport()->installEventFilter(this);
}

void QcbsMainWindow::applyTextOnButtons()
{
    const Qt::ToolButtonStyle look =
        preferences().textOnButtons ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonFollowStyle;
    for (QToolBar* bar : toolBars_)
        bar->setToolButtonStyle(look);
}

// --- questions and platform steps ----------------------------------------------------------------

int QcbsMainWindow::ask(QMessageBox::Icon icon, const QString& title, const QString& text,
                        QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton,
                        QMessageBox::StandardButton escapeButton, const QString& okText)
{
    QMessageBox box(icon, title, text, buttons, this);
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    if (escapeButton != QMessageBox::NoButton)
        box.setEscapeButton(escapeButton);
    if (!okText.isEmpty() && box.button(QMessageBox::Ok))
        box.button(QMessageBox::Ok)->setText(okText);
    return box.exec();
}

QString QcbsMainWindow::chooseOpenFile()
{
    return QFileDialog::getOpenFileName(this, QStringLiteral("Open"), QString(), fileFilter);
}

QString QcbsMainWindow::chooseSaveFile(const QString& proposal)
{
    // The replace question is asked by the window itself, so the dialog must not ask it too.
    return QFileDialog::getSaveFileName(this, QStringLiteral("Save As"), proposal, fileFilter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}

bool QcbsMainWindow::openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

bool QcbsMainWindow::setUpPrinter(QPrinter& printer)
{
    QPrintDialog dialog(&printer, this);
    return dialog.exec() == QDialog::Accepted;
}

QcbsMainWindow* QcbsMainWindow::createWindow()
{
    return new QcbsMainWindow(state_, false);
}

void QcbsMainWindow::showNotAvailable()
{
    ask(QMessageBox::Warning, programText(), QStringLiteral("Feature not available in this version"));
}

// --- help ---------------------------------------------------------------------------------------

void QcbsMainWindow::specialCharPopUp()
{
    auto* dialog = new QcbsSpecialCharDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void QcbsMainWindow::about()
{
    auto* app = qobject_cast<QcbsApplication*>(QCoreApplication::instance());
    const QDate validity = app ? app->validityDate() : QcbsApplication::buildValidityDate();
    QMessageBox::about(
        this, QStringLiteral("About ") + programText(),
        programText() + QStringLiteral(" - Version ") + QString::fromStdString(programVersion()) +
            QStringLiteral("\n") + QString::fromStdString(programReleaseDate()) +
            QStringLiteral("\n\nCore dictionary ") + QString::fromStdString(coreDictionaryVersion()) +
            QStringLiteral(" (") + QString::fromStdString(coreDictionaryDate()) +
            QStringLiteral(")\nBuild date: ") + validity.toString(Qt::ISODate));
}

void QcbsMainWindow::help()
{
    const QString chm = state_->documentationDirectory() + QDir::separator() + QStringLiteral("Cifward.chm");
    logDebug(1, "MainWindow::help - looking for: %s", qPrintable(chm));
    if (!state_->documentationDirectory().isEmpty() && QFileInfo::exists(chm)) {
        if (openUrl(QUrl::fromLocalFile(chm))) {
            logDebug(1, "MainWindow::help - success");
            return;
        }
        logWarning("MainWindow::help - Could not open .chm file - %s - will try HTML instead",
                   qPrintable(chm));
    } else {
        logWarning("MainWindow::help - Missing.chm file - %s - will try HTML instead", qPrintable(chm));
    }
    helpFile(QStringLiteral("Cifward.html"));
}

void QcbsMainWindow::helpFile(const QString& name)
{
    const QString directory = state_->documentationDirectory();
    const QString path = QDir(directory).filePath(name);
    logDebug(1, "MainWindow::help - looking for: %s", qPrintable(path));
    if (directory.isEmpty() || !QFileInfo::exists(path.section(QLatin1Char('#'), 0, 0))) {
        logWarning("MainWindow::help - could not find documentation");
        QString shown = directory.isEmpty() ? state_->documentationMissingText() : path;
        ask(QMessageBox::Warning, programText(),
            QStringLiteral("Sorry - Cannot find the Cifward Documentation:\n\n") + shown);
        return;
    }
    QUrl url = QUrl::fromLocalFile(path.section(QLatin1Char('#'), 0, 0));
    if (path.contains(QLatin1Char('#')))
        url.setFragment(path.section(QLatin1Char('#'), 1));
    if (!openUrl(url)) {
        logWarning("MainWindow::help - could not open help");
        ask(QMessageBox::Warning, programText(),
            QStringLiteral("Sorry - Cannot open the Cifward Documentation in your web browser:\n\n") + path);
    }
}

void QcbsMainWindow::cifwardHomePage()
{
    const QString address = QString::fromStdString(programHomePage());
    if (openUrl(QUrl(address))) {
        logDebug(1, "QcbsMainWindow::cifwardHome - success");
        return;
    }
    logWarning("MainWindow::cifwardHome - could not open Cifward home page");
    ask(QMessageBox::Warning, programText(),
        QStringLiteral("Sorry - Cannot load the Cifward Home Page in your web browser:\n\n") + address);
}

// --- output and status --------------------------------------------------------------------------

void QcbsMainWindow::writeToOutputPane(const QString& text)
{
    writeToOutputPane(text, true);
}

void QcbsMainWindow::writeToOutputPane(const QString& text, bool newLine)
{
    outputPane_->write(text, newLine);
}

void QcbsMainWindow::statusBarMessage()
{
    statusBarMessage(QString());
}

void QcbsMainWindow::statusBarMessage(const QString& text)
{
    statusBar()->showMessage(text);
    if (tabs_ && tabs_->currentWidget() == visualiserPage_)
        visualiserStatus_ = text;
    else
        editorStatus_ = text;
}

void QcbsMainWindow::restoreStatusBarMessage(QWidget* page)
{
    statusBar()->showMessage(page == visualiserPage_ ? visualiserStatus_ : editorStatus_);
}

QString QcbsMainWindow::statusLine() const
{
    return positionLabel_->text();
}

void QcbsMainWindow::statusLineNumber()
{
    const QTextCursor cursor = editor_->textCursor();
    QString text = QStringLiteral("Line ") + QString::number(cursor.blockNumber() + 1) +
                   QStringLiteral(", Column ") + QString::number(cursor.positionInBlock() + 1);
    if (editor_->document()->isModified())
        text += QStringLiteral(" (File Modified)");
    positionLabel_->setText(text);
}

void QcbsMainWindow::editorCursorMoved()
{
    statusLineNumber();
}

void QcbsMainWindow::editorLineChanged(int)
{
    if (tabs_->currentWidget() == editorPage_)
        enableCifTools(true);
}

void QcbsMainWindow::editorTextChanged()
{
    enableParseTools(true);
    statusLineNumber();
}

void QcbsMainWindow::editorTextSizeChanged(int)
{
    numberedEditor_->lineNumberView()->setFont(editor_->font());
}

void QcbsMainWindow::setCaption()
{
    setCaption(fileName_);
}

void QcbsMainWindow::setCaption(const QString& path)
{
    setWindowTitle(path.isEmpty() ? programText()
                                  : programText() + QStringLiteral(" - ") + QFileInfo(path).fileName());
}

void QcbsMainWindow::setCaption(QWidget* page)
{
    if (page != editorPage_ && page != visualiserPage_) {
        setWindowTitle(programText());
        return;
    }
    setCaption(fileName_.isEmpty() ? QStringLiteral("new.cif") : fileName_);
}

// --- tools by page and state ----------------------------------------------------------------------

void QcbsMainWindow::enableTools(QWidget* page)
{
    if (page == editorPage_) {
        enableEditorTools(true);
        enableFindTools(true);
        enableVisTools(false);
        enableCifTools(true);
        enableParseTools(!editor_->parsed());
    } else if (page == visualiserPage_) {
        enableVisTools(true);
        enableEditorTools(false);
        enableFindTools(false);
        enableParseTools(false);
        itemHelpAction_->setEnabled(false);
        enableCifTools(false);
    }
}

void QcbsMainWindow::enableVisualiser(QWidget* page)
{
    if (page != visualiserPage_)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (!editor_->parsed())
        reparse();
    statusBarMessage(QStringLiteral("Extracting 3D coordinates..."));
    QApplication::restoreOverrideCursor();
}

void QcbsMainWindow::enableEditorTools(bool on)
{
    for (QAction* action :
         {filePrintAction_, undoAction_, redoAction_, copyAction_, cutAction_, pasteAction_, selectAllAction_,
          insertAction_, templateAction_, combineAction_, zoomOutAction_, zoomInAction_})
        action->setEnabled(on);
}

void QcbsMainWindow::enableFileTools(bool on)
{
    for (QAction* action : {fileSaveAction_, fileSaveAsAction_, fileCloseAction_})
        action->setEnabled(on);
}

void QcbsMainWindow::enableParseTools(bool on)
{
    checkAction_->setEnabled(on);
}

void QcbsMainWindow::enableFindTools(bool on)
{
    for (QAction* action :
         {findAction_, findNextAction_, findPreviousAction_, replaceAction_, gotoLineAction_})
        action->setEnabled(on);
}

void QcbsMainWindow::enableVisTools(bool on)
{
    lumeniaAction_->setEnabled(on);
}

void QcbsMainWindow::enableCifTools(bool on)
{
    for (QAction* action : {itemHelpAction_, editLoopAction_, newLoopAction_, publicationWizardAction_,
                            crystalWizardAction_, browserAction_})
        action->setEnabled(on);
    if (!on)
        return;
    const bool inText = editor_->isInTextBlock();
    itemHelpAction_->setEnabled(!editor_->currentDataItem().isEmpty());
    editLoopAction_->setEnabled(!inText && editor_->isLoopLine());
    newLoopAction_->setEnabled(!inText);
    bool crystalData = false;
    if (editor_->parsed() && document_) {
        const auto block = document_->block_at_line(currentParagraph() + 1);
        if (block != document_->end())
            crystalData = (*block)->has_category("chemical") || (*block)->has_category("atom_site") ||
                          (*block)->has_category("cell");
    }
    crystalWizardAction_->setEnabled(crystalData);
}

void QcbsMainWindow::enableAllInstParseTools()
{
    enableAllInstParseTools(true);
}

void QcbsMainWindow::enableAllInstParseTools(bool on)
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget); window && window->editor_) {
            window->editor_->highlighter()->setDictionary(state_->activeDictionaries());
            window->checkAction_->setEnabled(on);
            window->editor_->setParsed(false);
        }
}

void QcbsMainWindow::initialiseAllInstSettings()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QcbsMainWindow*>(widget))
            window->applyTextOnButtons();
}

void QcbsMainWindow::initialiseEditorSettings()
{
    const QcbsPreferences& prefs = preferences();
    state_->showLineNumbers = prefs.lineNumbers;
    state_->saveBackupFile = prefs.saveBackupFile;
    state_->lineLengthLimit = prefs.lineLengthLimit;
    state_->lineLengthTolerance = prefs.lineLengthTolerance;
    numberedEditor_->setShowLineNumbers(prefs.lineNumbers);
    updateEditorStyles();
}

void QcbsMainWindow::updateEditorStyles()
{
    editor_->processStyles();
}

void QcbsMainWindow::loadMandatoryDataItemSettings()
{
    state_->mandatoryCrystalItems.clear();
    state_->mandatoryPublicationItems.clear();
    const QcbsPreferences& prefs = preferences();
    if (!prefs.checkMandatoryItems || prefs.mandatoryFilename.isEmpty())
        return;
    CifMandatoryItems items;
    if (!items.read_file(QFile::encodeName(prefs.mandatoryFilename).toStdString())) {
        writeToOutputPane(QStringLiteral("Error loading mandatory data items, could not open file: ") +
                          prefs.mandatoryFilename);
        return;
    }
    state_->mandatoryCrystalItems = items.crystal_items;
    state_->mandatoryPublicationItems = items.publication_items;
    writeToOutputPane(QStringLiteral("Loaded mandatory data items file: ") + prefs.mandatoryFilename);
}

// --- events -------------------------------------------------------------------------------------

namespace {

QStringList droppedFiles(const QMimeData* data)
{
    QStringList files;
    if (!data)
        return files;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            files << QDir::fromNativeSeparators(url.toLocalFile());
    return files;
}

} // namespace

void QcbsMainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!droppedFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void QcbsMainWindow::dragMoveEvent(QDragMoveEvent* event)
{
    if (!droppedFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void QcbsMainWindow::dropEvent(QDropEvent* event)
{
    processDropEvent(event);
}

void QcbsMainWindow::processDropEvent(QDropEvent* event)
{
    const QStringList files = droppedFiles(event->mimeData());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    if (files.size() > 1 && preferences().reuseWindow) {
        ask(QMessageBox::Information, programText(),
            QStringLiteral(
                "Your preferences are set for single window mode, only one file can be dropped in."));
        return;
    }
    for (const QString& path : files) {
        if (isReusable()) {
            if (documentOpen_ && !fileClose())
                return;
            loadFile(path, true, true);
        } else {
            openInNewWindow(path, true);
        }
    }
}

bool QcbsMainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (editor_ && watched == editor_->viewport()) {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDragMoveEvent*>(event);
            if (droppedFiles(drag->mimeData()).isEmpty())
                break;
            drag->acceptProposedAction();
            return true;
        }
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            if (droppedFiles(drop->mimeData()).isEmpty())
                break;
            processDropEvent(drop);
            return true;
        }
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void QcbsMainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (documentOpen_ && !fileClose())
        return;
    if (shared().lastActive == this)
        shared().lastActive = nullptr;
    for (QDialog* search :
         std::initializer_list<QDialog*>{QcbsFindDialog::existing(), QcbsReplaceDialog::existing()})
        if (search)
            search->close();
    event->accept();
}

void QcbsMainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        shared().lastActive = this;
    QMainWindow::changeEvent(event);
}
