#include "QcbsMainWindow.h"

#include "CifMandatoryItems.h"
#include "Logger.h"
#include "ProgramInfo.h"
#include "QcbsApplication.h"
#include "QcbsCifText.h"
#include "QcbsCoreCifFileValidator.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsDictionarySettings.h"
#include "QcbsErrorListView.h"
#include "QcbsErrorReport.h"
#include "QcbsLineNumberView.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsOutputPane.h"
#include "QcbsPreferences.h"
#include "QcbsPrefsDialog.h"
#include "QcbsRichTextEdit.h"
#include "QcbsSpecialCharDialog.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QAbstractButton>
#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSplitter>
#include <QStatusBar>
#include <QStringEncoder>
#include <QStyle>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolBar>
#include <QUrl>
#include <sstream>
#include <unistd.h>

namespace {

const QString fileFilter = QStringLiteral("CIF (*.cif);;All Files (*)");
const QString emptyRecent = QStringLiteral("(empty)");
const QString noBlocks = QStringLiteral("Blocks:  none");
// A block of this name, when a file names it so itself, is not counted as one of the file's.
const char* const hiddenBlockName = "data_added_by_ciphward";

struct RecentEntry {
    int id;
    QString path;
};

// The recent-files menu is one for the whole process, as the preferences are.
struct SharedState {
    QList<RecentEntry> recent;
    int nextRecentId = 1;
    QPointer<QMenu> recentMenu;
    int windowCount = 0;
    int untitledCounter = 1;
    QPointer<QcbsMainWindow> lastActive;
};

SharedState& shared()
{
    static SharedState state;
    return state;
}

void rebuildRecentMenu()
{
    QMenu* menu = shared().recentMenu;
    if (!menu)
        return;
    menu->clear();
    for (const RecentEntry& entry : shared().recent)
        menu->addAction(entry.path)->setData(entry.id);
}

QString programText()
{
    return QString::fromStdString(programName());
}

bool isBlockLine(const QString& line)
{
    return line.startsWith(QLatin1String("data_"), Qt::CaseInsensitive);
}

// Block names ignore case, and a comment may follow the name on its header line.
bool namesBlock(const QString& line, const QString& name)
{
    return line.simplified().section(QLatin1Char(' '), 0, 0).compare(name, Qt::CaseInsensitive) == 0;
}

bool isNameLine(const QString& line)
{
    return line.trimmed().startsWith(QLatin1Char('_'));
}

bool isLoopKeyword(const QString& line)
{
    return line.trimmed().startsWith(QLatin1String("loop_"), Qt::CaseInsensitive);
}

bool isQuietLine(const QString& line)
{
    const QString trimmed = line.trimmed();
    return trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#'));
}

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
    boxView_ = new QWidget(editorPage_);
    boxView_->setObjectName(QStringLiteral("boxview"));
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

// --- the document -------------------------------------------------------------------------------

QString QcbsMainWindow::fileName() const
{
    return fileName_;
}

HCif QcbsMainWindow::document() const
{
    return document_;
}

bool QcbsMainWindow::isReusable() const
{
    return preferences().reuseWindow ||
           (editor_ && !editor_->document()->isModified() && editor_->document()->isEmpty());
}

void QcbsMainWindow::fileNew()
{
    fileNew(isReusable());
}

void QcbsMainWindow::fileNew(bool reuse)
{
    if (!reuse && documentOpen_) {
        newWindow();
        return;
    }
    if (reuse && documentOpen_ && !fileClose())
        return;
    errorList_->clear();
    if (!preferences().startWithTemplate) {
        fileNewUntitled();
        return;
    }
    if (loadFile(preferences().templateFilename, false, false)) {
        enableParseTools(true);
        editor_->setParsed(false);
        writeToOutputPane(QStringLiteral("(Note, template files are not automatically parsed for errors)"));
    } else {
        fileNewUntitled();
        statusBarMessage(QStringLiteral("Could not open template file"));
    }
}

void QcbsMainWindow::fileNewUntitled()
{
    const int counter = shared().untitledCounter++;
    const QString number = QString::number(counter);
    writeToOutputPane(QStringLiteral("<br>Starting new file \"untitled") + number + QStringLiteral(".cif\""));
    const QString path = untitledPrefix() + number + QStringLiteral(".cif");
    editor_->setText(QString());
    editor_->setParsed(false);
    fileName_ = path;
    document_ = HCif();
    documentOpen_ = true;
    stamp_ = DiskStamp();
    setCaption(path);
    boxView_->setVisible(boxViewVisible_);
    updateBlockCombo(nullptr);
    enableTools(tabs_->currentWidget());
    enableParseTools(false);
    statusLineNumber();
}

void QcbsMainWindow::newWindow()
{
    saveSettings();
    QcbsMainWindow* window = createWindow();
    window->fileNew(true);
    window->show();
}

void QcbsMainWindow::fileOpen()
{
    const QString path = chooseOpenFile();
    if (path.isEmpty())
        return;
    if (isReusable()) {
        if (documentOpen_ && !fileClose())
            return;
        loadFile(path, true, true);
    } else {
        openInNewWindow(path, true);
    }
}

bool QcbsMainWindow::fileOpen(const QString& path)
{
    return fileOpen(path, true);
}

bool QcbsMainWindow::fileOpen(const QString& path, bool showMessages)
{
    if (path.isEmpty())
        return true;
    QFile probe(path);
    if (!probe.open(QIODevice::ReadOnly))
        return false;
    probe.close();
    if (!isReusable())
        return openInNewWindow(path, showMessages);
    if (documentOpen_ && !fileClose())
        return false;
    return loadFile(path, true, showMessages);
}

bool QcbsMainWindow::openInNewWindow(const QString& path, bool showMessages)
{
    if (documentOpen_ && QFileInfo(path) == QFileInfo(fileName_)) {
        if (showMessages)
            ask(QMessageBox::Information, programText(),
                QStringLiteral("The file \"") + path + QStringLiteral("\" is already open."));
        return false;
    }
    saveSettings();
    QcbsMainWindow* window = createWindow();
    window->show();
    if (window->loadFile(path, true, showMessages))
        return true;
    window->close();
    return false;
}

bool QcbsMainWindow::loadFile(const QString& path, bool report, bool showMessages)
{
    if (documentOpen_ && QFileInfo(path) == QFileInfo(fileName_)) {
        ask(QMessageBox::Information, programText(), QStringLiteral("That file is already open."));
        return false;
    }
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        if (showMessages)
            ask(QMessageBox::Critical, QStringLiteral("Error"),
                QStringLiteral("Could not open file \"") + path + QLatin1Char('"'));
        return false;
    }
    writeToOutputPane(QStringLiteral("Reading CIF \"") + path + QLatin1Char('"'));
    const QString name = QFileInfo(path).fileName();
    QcbsCoreCifFileValidator validator;
    if (validator.validate(QFile::encodeName(path).toStdString()) == 0) {
        writeToOutputPane(QStringLiteral("Warning: \"") + name +
                          QStringLiteral("\" does not appear to be a valid CIF."));
        if (showMessages)
            ask(QMessageBox::Warning, QStringLiteral("Warning"),
                QStringLiteral("File \"") + name + QStringLiteral("\" does not appear to be a valid CIF."),
                QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, QStringLiteral("Continue"));
    }

    QApplication::setOverrideCursor(Qt::WaitCursor);
    editor_->setUpdatesEnabled(false);
    statusBarMessage(QStringLiteral("Reading...  "));
    int lines = 0;
    const QString text = editorLines(decodeCifText(file.readAll(), &latin1_), lines);
    file.close();
    editor_->setText(text);
    editor_->moveCursor(QTextCursor::Start);
    editor_->setUpdatesEnabled(true);
    editor_->document()->setModified(false);
    documentOpen_ = true;
    enableTools(tabs_->currentWidget());
    initialiseEditorSettings();
    setCaption(path);
    writeToOutputPane(QStringLiteral("Read ") + QString::number(lines) +
                      (lines == 1 ? QStringLiteral(" line.") : QStringLiteral(" lines.")));
    progress_->reset();

    fileName_ = path;
    stamp_ = stampOf(path);
    addRecentFile(path);

    statusBarMessage(QStringLiteral("Parsing CIF...  "));
    document_ = parseFile(path, report);
    editor_->setParsed(true);
    enableTools(tabs_->currentWidget());
    numberedEditor_->lineNumberView()->setNumberOfLines(editor_->document()->blockCount());
    QApplication::restoreOverrideCursor();
    statusBarMessage(QStringLiteral("Ready"));
    statusLineNumber();
    return true;
}

HCif QcbsMainWindow::parse(const std::string& text, bool report)
{
    HCif cif(new Cif(state_->activeDictionaries()));
    std::istringstream stream(text);
    cif->read(stream, static_cast<unsigned>(state_->lineLengthLimit));
    if (preferences().checkMandatoryItems &&
        !(state_->mandatoryCrystalItems.empty() && state_->mandatoryPublicationItems.empty()))
        cif->check_mandatory(state_->mandatoryPublicationItems, state_->mandatoryCrystalItems);
    if (report)
        reportErrors(*cif);
    updateBlockCombo(cif.get());
    return cif;
}

HCif QcbsMainWindow::parseFile(const QString& path, bool report)
{
    Q_UNUSED(path);
    // The editor holds the file's lines as read, so parsing them is parsing the file.
    return parse(editor_->toPlainText().toStdString(), report);
}

HCif QcbsMainWindow::parseText(const QString& text, bool report)
{
    HCif cif = parse(text.toStdString(), report);
    editor_->setParsed(true);
    enableTools(tabs_->currentWidget());
    return cif;
}

void QcbsMainWindow::reportErrors(const Cif& cif)
{
    QcbsErrorReport(errorList_, outputPane_, editor_).report(cif, preferences().maxConsecError);
    // A finding's line is only trusted while the text keeps the line count it was checked with.
    editor_->setLinesAtCheck(editor_->document()->blockCount());
}

void QcbsMainWindow::reparse()
{
    if (fileName_.isEmpty())
        return;
    statusBarMessage(QStringLiteral("Parsing CIF..."));
    const QString text = editor_->toPlainText();
    if (text.isEmpty())
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    writeToOutputPane(QStringLiteral("<p> </p>"));
    writeToOutputPane(QStringLiteral("Checking CIF ..."));
    document_ = parseText(text, true);
    QApplication::restoreOverrideCursor();
    statusBarMessage(QStringLiteral("Ready"));
}

bool QcbsMainWindow::fileClose()
{
    if (!editor_)
        return false;
    if (editor_->document()->isModified()) {
        const int answer =
            ask(QMessageBox::Warning, programText(), QStringLiteral("Save changes to current file?"),
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel,
                QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel)
            return false;
        if (answer == QMessageBox::Yes)
            fileSave();
        else
            editor_->document()->setModified(false);
    }
    if (editor_->document()->isModified() || !tabs_->currentWidget())
        return false;
    saveSettings();
    fileName_.clear();
    document_ = HCif();
    documentOpen_ = false;
    stamp_ = DiskStamp();
    editor_->setText(QString());
    editor_->document()->setModified(false);
    updateBlockCombo(nullptr);
    setCaption(QString());
    return true;
}

void QcbsMainWindow::fileCloseRequested()
{
    int windows = 0;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (qobject_cast<QcbsMainWindow*>(widget) && widget->isVisible())
            ++windows;
    if (windows > 1) {
        close();
        return;
    }
    if (editor_->document()->isModified() || !editor_->document()->isEmpty())
        fileNew(true);
}

void QcbsMainWindow::fileExit()
{
    QApplication::closeAllWindows();
}

// --- saving -------------------------------------------------------------------------------------

QcbsMainWindow::DiskStamp QcbsMainWindow::stampOf(const QString& path) const
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    return {info.lastModified(), info.size()};
}

bool QcbsMainWindow::changedOnDisk(const QString& path) const
{
    if (stamp_.size < 0)
        return false;
    const DiskStamp now = stampOf(path);
    return now.size != stamp_.size || now.modified != stamp_.modified;
}

bool QcbsMainWindow::writeDocument(const QString& path)
{
    static const QRegularExpression oneTrailingSpace(QStringLiteral("\\s$"));
    QString text;
    text.reserve(editor_->document()->characterCount() * 2);
    for (QTextBlock block = editor_->document()->begin(); block.isValid(); block = block.next()) {
        if (block != editor_->document()->begin())
            text += QStringLiteral("\r\n");
        QString line = block.text();
        line.remove(oneTrailingSpace);
        text += line;
    }
    const QByteArray bytes = latin1_ ? text.toLatin1() : text.toUtf8();

    // The new text goes to a file beside the old one and replaces it only when complete, so a
    // full disk or a killed process never leaves the user's file half written.
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.flush()) {
        out.cancelWriting();
        return false;
    }
    if (state_->saveBackupFile && QFileInfo::exists(path)) {
        const QFileInfo info(path);
        const int dot = path.lastIndexOf(QLatin1Char('.'));
        const bool dotInName = dot > path.lastIndexOf(QLatin1Char('/'));
        const QString backup = dotInName ? path.left(dot) + QStringLiteral("_backup") + path.mid(dot)
                                         : path + QStringLiteral("_backup");
        QFile::remove(backup);
        // A second name for the old contents survives the rename below untouched.
        const bool kept =
            ::link(QFile::encodeName(path).constData(), QFile::encodeName(backup).constData()) == 0 ||
            QFile::copy(path, backup);
        if (!kept)
            ask(QMessageBox::Warning, QStringLiteral("Error"),
                QStringLiteral("Could not write backup copy of this file:\n") + backup);
    }
    return out.commit();
}

bool QcbsMainWindow::fileSave()
{
    if (!editor_)
        return false;
    if (fileName_.isEmpty() || !QFileInfo::exists(fileName_))
        return fileSaveAs();
    if (changedOnDisk(fileName_)) {
        const int answer =
            ask(QMessageBox::Warning, programText(),
                QStringLiteral("The file \"") + QFileInfo(fileName_).fileName() +
                    QStringLiteral("\" has changed on disk since it was opened. Overwrite it?"),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes) {
            statusBarMessage(QStringLiteral("Not saved: the file changed on disk"));
            return false;
        }
    }
    if (!writeDocument(fileName_)) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral(
                "Could not write to this file. Check file permissions, or use 'Save As' to make a copy"));
        return false;
    }
    stamp_ = stampOf(fileName_);
    editor_->document()->setModified(false);
    statusLineNumber();
    return true;
}

bool QcbsMainWindow::fileSaveAs()
{
    if (!editor_)
        return false;
    const bool untitled = fileName_.isEmpty() || fileName_.startsWith(untitledPrefix());
    QString path = untitled ? QStringLiteral("new.cif") : fileName_;
    for (;;) {
        path = chooseSaveFile(path);
        if (path.isEmpty())
            return false;
        if (!QFileInfo::exists(path))
            break;
        const int answer = ask(QMessageBox::Warning, programText(),
                               path + QStringLiteral(" already exists\nDo you want to replace it?"),
                               QMessageBox::Yes | QMessageBox::No, QMessageBox::No, QMessageBox::No);
        if (answer == QMessageBox::Yes)
            break;
    }
    const bool existed = QFileInfo::exists(path);
    {
        QFile probe(path);
        if (!probe.open(QIODevice::Append)) {
            ask(QMessageBox::Critical, QStringLiteral("Error"),
                QStringLiteral("Could not write to this file (check permissions)"));
            return false;
        }
    }
    const QString previous = fileName_;
    const DiskStamp previousStamp = stamp_;
    fileName_ = path;
    // Choosing the name is the user's consent to replace whatever is there now.
    stamp_ = stampOf(path);
    if (!fileSave()) {
        if (!existed)
            QFile::remove(path);
        fileName_ = previous;
        stamp_ = previousStamp;
        return false;
    }
    setCaption(path);
    addRecentFile(path);
    return true;
}

// --- recent files -------------------------------------------------------------------------------

void QcbsMainWindow::addRecentFile(const QString& path)
{
    QList<RecentEntry>& recent = shared().recent;
    recent.erase(std::remove_if(recent.begin(), recent.end(), [](const RecentEntry& e) { return e.id == 0; }),
                 recent.end());
    for (const RecentEntry& entry : recent)
        if (entry.path == path) {
            rebuildRecentMenu();
            return;
        }
    const int oldest = shared().nextRecentId - QcbsPreferences::maxRecentFiles;
    if (oldest > 0)
        recent.erase(std::remove_if(recent.begin(), recent.end(),
                                    [oldest](const RecentEntry& e) { return e.id == oldest; }),
                     recent.end());
    recent.append({shared().nextRecentId++, path});
    rebuildRecentMenu();
}

void QcbsMainWindow::fileLoadRecent(int id)
{
    if (shared().lastActive != this)
        return;
    if (QApplication::activeWindow() && QApplication::activeWindow() != this)
        return;
    QString path;
    for (const RecentEntry& entry : shared().recent)
        if (entry.id == id && id != 0)
            path = entry.path;
    if (path.isEmpty())
        return;
    if (!QFileInfo::exists(path)) {
        ask(QMessageBox::Warning, QStringLiteral("Error"),
            QStringLiteral("The file \"") + path + QStringLiteral("\" no longer exists."));
        return;
    }
    const bool same = documentOpen_ && QFileInfo(path) == QFileInfo(fileName_);
    if (isReusable()) {
        if (same) {
            ask(QMessageBox::Information, programText(), QStringLiteral("That file is already open."));
            return;
        }
        if (documentOpen_ && !fileClose())
            return;
        loadFile(path, true, true);
    } else if (same) {
        openInNewWindow(path, true);
    }
}

void QcbsMainWindow::saveSettings()
{
    QcbsPreferences& prefs = preferences();
    prefs.recentFiles = recentFiles();
    if (isVisible() && !isMaximized()) {
        prefs.windowWidth = width();
        prefs.windowHeight = height();
    }
    prefs.write();
}

// --- printing -----------------------------------------------------------------------------------

void QcbsMainWindow::filePrint()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setFullPage(true);
    if (!setUpPrinter(printer))
        return;
    if (!printTo(printer))
        statusBarMessage(QStringLiteral("Printing failed"));
}

bool QcbsMainWindow::printTo(QPrinter& printer)
{
    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const int dpi = printer.logicalDpiY();
    const int margin = dpi * 72 / 72;
    const QRect page(0, 0, printer.width(), printer.height());
    QFont font = editor_->font();
    QTextDocument layout;
    layout.documentLayout()->setPaintDevice(&printer);
    layout.setDefaultFont(font);
    layout.setPlainText(editor_->toPlainText());
    const QFontMetrics footerMetrics(font, &printer);
    const QRect body(margin, margin, page.width() - 2 * margin, page.height() - 2 * margin);
    layout.setTextWidth(body.width());
    layout.setPageSize(body.size());

    const QString left = QStringLiteral("Cifward:  ") + QFileInfo(fileName_).fileName();
    const QString stamp = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    const int pages = qMax(1, layout.pageCount());
    for (int n = 0; n < pages; ++n) {
        if (n > 0)
            printer.newPage();
        painter.save();
        painter.translate(body.left(), body.top() - n * body.height());
        const QRectF visible(0, n * body.height(), body.width(), body.height());
        painter.setClipRect(visible);
        layout.drawContents(&painter, visible);
        painter.restore();
        painter.setFont(font);
        const int baseline = body.bottom() + footerMetrics.height() + footerMetrics.ascent();
        painter.drawText(body.left(), baseline, left);
        const QString right = stamp + QStringLiteral("  Page ") + QString::number(n + 1);
        painter.drawText(body.right() - footerMetrics.horizontalAdvance(right), baseline, right);
    }
    return painter.end();
}

// --- edit routes ----------------------------------------------------------------------------------

void QcbsMainWindow::editUndo()
{
    editor_->undo();
}
void QcbsMainWindow::editRedo()
{
    editor_->redo();
}
void QcbsMainWindow::editCopy()
{
    editor_->copy();
}
void QcbsMainWindow::editCut()
{
    editor_->cut();
}
void QcbsMainWindow::editPaste()
{
    editor_->paste();
}
void QcbsMainWindow::editInsert()
{
    editor_->insertFile();
}
void QcbsMainWindow::editInsertTemplate()
{
    editor_->insertTemplateFile();
}
void QcbsMainWindow::editSelectall()
{
    editor_->selectAll();
}
void QcbsMainWindow::editZoomin()
{
    editor_->bigger();
}
void QcbsMainWindow::editZoomout()
{
    editor_->smaller();
}

void QcbsMainWindow::editPrefs()
{
    QcbsPrefsDialog dialog(&preferences(), state_->dictionarySettings(), this);
    connect(&dialog, &QcbsPrefsDialog::editorPrefsChanged, this, &QcbsMainWindow::initialiseEditorSettings);
    connect(&dialog, &QcbsPrefsDialog::mainWinPrefsChanged, this, &QcbsMainWindow::initialiseAllInstSettings);
    connect(&dialog, &QcbsPrefsDialog::parserPrefsChanged, this,
            qOverload<>(&QcbsMainWindow::enableAllInstParseTools));
    connect(&dialog, &QcbsPrefsDialog::mandatoryPrefsChanged, this,
            &QcbsMainWindow::loadMandatoryDataItemSettings);
    connect(&dialog, &QcbsPrefsDialog::applyButtonPressed, this, &QcbsMainWindow::saveSettings);
    dialog.exec();
}

void QcbsMainWindow::combine()
{
    if (preferences().templateFilename.isEmpty()) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral("No template file set in preferences"));
        return;
    }
    if (!QFile(preferences().templateFilename).open(QIODevice::ReadOnly)) {
        ask(QMessageBox::Critical, QStringLiteral("Error"),
            QStringLiteral("Could not open template file \"") + preferences().templateFilename +
                QLatin1Char('"'));
        return;
    }
    showNotAvailable();
}

void QcbsMainWindow::dataitemHelp()
{
    dataitemHelp(editor_->currentDataItem());
}

void QcbsMainWindow::dataitemHelp(const QString& name)
{
    if (name.isEmpty()) {
        ask(QMessageBox::Information, QStringLiteral("Data item help"),
            QStringLiteral("No help available. Be sure to place cursor on a line containing a data item."));
        return;
    }
    showNotAvailable();
}

void QcbsMainWindow::toggleBoxView()
{
    showNotAvailable();
}
void QcbsMainWindow::publicationWizard()
{
    showNotAvailable();
}
void QcbsMainWindow::crystalWizard()
{
    showNotAvailable();
}
void QcbsMainWindow::loopEd()
{
    showNotAvailable();
}
void QcbsMainWindow::loopNew()
{
    showNotAvailable();
}
void QcbsMainWindow::wizardEd()
{
}
void QcbsMainWindow::editFind()
{
    showNotAvailable();
}
void QcbsMainWindow::editFindNext()
{
    showNotAvailable();
}
void QcbsMainWindow::editFindPrevious()
{
    showNotAvailable();
}
void QcbsMainWindow::editReplace()
{
    showNotAvailable();
}
void QcbsMainWindow::editGotoLine()
{
    showNotAvailable();
}
void QcbsMainWindow::hg()
{
    showNotAvailable();
}

int QcbsMainWindow::currentParagraph() const
{
    return editor_->textCursor().blockNumber();
}

void QcbsMainWindow::replaceLines(int first, int last, const QString& text)
{
    QTextDocument* doc = editor_->document();
    QTextCursor cursor(doc->findBlockByNumber(first));
    cursor.beginEditBlock();
    if (last >= first) {
        const QTextBlock end = doc->findBlockByNumber(last);
        if (end.next().isValid())
            cursor.setPosition(end.next().position(), QTextCursor::KeepAnchor);
        else
            cursor.setPosition(end.position() + end.length() - 1, QTextCursor::KeepAnchor);
    }
    QString inserted = text;
    if (!inserted.endsWith(QLatin1Char('\n')))
        inserted += QLatin1Char('\n');
    cursor.insertText(inserted);
    cursor.endEditBlock();
    editor_->setTextCursor(QTextCursor(doc->findBlockByNumber(first)));
}

int QcbsMainWindow::blockStartLine(int paragraph) const
{
    for (QTextBlock block = editor_->document()->findBlockByNumber(paragraph); block.isValid();
         block = block.previous())
        if (isBlockLine(block.text().trimmed()))
            return block.blockNumber();
    return -1;
}

int QcbsMainWindow::blockEndLine(int start) const
{
    QTextBlock block = editor_->document()->findBlockByNumber(start);
    int last = start;
    for (block = block.next(); block.isValid(); block = block.next()) {
        if (isBlockLine(block.text().trimmed()))
            break;
        last = block.blockNumber();
    }
    return last;
}

int QcbsMainWindow::loopStartLine(int paragraph) const
{
    for (QTextBlock block = editor_->document()->findBlockByNumber(paragraph); block.isValid();
         block = block.previous()) {
        if (isLoopKeyword(block.text()))
            return block.blockNumber();
        if (isBlockLine(block.text().trimmed()))
            break;
    }
    return -1;
}

// The loop runs from its "loop_" past its names and its values, to the next name, loop or block
// that follows a value; comments and blank lines at its end stay outside.
int QcbsMainWindow::loopEndLine(int start) const
{
    QTextBlock block = editor_->document()->findBlockByNumber(start).next();
    int last = start;
    bool inNames = true;
    bool inText = false;
    for (; block.isValid(); block = block.next()) {
        const QString line = block.text();
        if (line.startsWith(QLatin1Char(';'))) {
            inText = !inText;
            inNames = false;
            last = block.blockNumber();
            continue;
        }
        if (inText) {
            last = block.blockNumber();
            continue;
        }
        if (isQuietLine(line))
            continue;
        if (isNameLine(line)) {
            if (!inNames)
                break;
        } else if (isLoopKeyword(line) || isBlockLine(line.trimmed())) {
            break;
        } else {
            inNames = false;
        }
        last = block.blockNumber();
    }
    return last;
}

void QcbsMainWindow::loopUpdate(const QString& text)
{
    const int start = loopStartLine(currentParagraph());
    if (start < 0) {
        loopAdd(text);
        return;
    }
    replaceLines(start, loopEndLine(start), text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::loopAdd(const QString& text)
{
    replaceLines(currentParagraph(), currentParagraph() - 1, text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::blockUpdate(const QString& text)
{
    const int start = blockStartLine(currentParagraph());
    if (start < 0) {
        blockAdd(text);
        return;
    }
    replaceLines(start, blockEndLine(start), text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::blockAdd(const QString& text)
{
    editor_->textCursor().insertText(text);
    if (!editor_->parsed())
        reparse();
}

void QcbsMainWindow::dataItemUpdate(const QString& blockName, const QString& item, const QString& value)
{
    QTextDocument* doc = editor_->document();
    QTextBlock block = doc->begin();
    if (!blockName.isEmpty()) {
        while (block.isValid() && !namesBlock(block.text(), blockName))
            block = block.next();
        if (!block.isValid())
            return;
    }
    for (; block.isValid(); block = block.next()) {
        const QString line = block.text().simplified();
        if (!blockName.isEmpty() && isBlockLine(line) && !namesBlock(line, blockName))
            return;
        const QString name = line.section(QLatin1Char(' '), 0, 0);
        if (name.compare(item, Qt::CaseInsensitive) != 0)
            continue;
        QTextCursor cursor(block);
        cursor.beginEditBlock();
        if (line.contains(QLatin1Char(' '))) {
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            cursor.insertText(name + QLatin1Char(' ') + value);
        } else {
            cursor.movePosition(QTextCursor::EndOfBlock);
            cursor.insertText(QLatin1Char('\n') + value);
        }
        cursor.endEditBlock();
        reparse();
        return;
    }
}

void QcbsMainWindow::editorInsertTextHelper(const QString& text)
{
    editor_->textCursor().insertText(text);
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

// --- the block combo ------------------------------------------------------------------------------

void QcbsMainWindow::updateBlockCombo(const Cif* cif)
{
    blockCombo_->clear();
    const std::size_t count = cif ? cif->block_count() : 0;
    if (count == 0 || (count == 1 && cif->block(0).name() == hiddenBlockName)) {
        blockCombo_->addItem(noBlocks);
        blockCombo_->setEnabled(false);
        return;
    }
    const bool firstHidden = cif->block(0).name() == hiddenBlockName;
    blockCombo_->addItem(QStringLiteral("Blocks:   ") + QString::number(count - (firstHidden ? 1 : 0)));
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& name = cif->block(i).name();
        blockCombo_->addItem(i == 0 && firstHidden ? QString() : QString::fromStdString(name));
    }
    blockCombo_->setEnabled(true);
}

void QcbsMainWindow::blockComboSelected(int index)
{
    if (index < 0) {
        QApplication::beep();
        return;
    }
    if (index == 0 || !document_ || std::size_t(index - 1) >= document_->block_count())
        return;
    if (tabs_->currentWidget() == editorPage_)
        editorJumpToBlockHelper(QString::fromStdString(document_->block(std::size_t(index - 1)).name()));
}

void QcbsMainWindow::editorJumpToBlockHelper(const QString& block)
{
    if (!document_)
        return;
    const auto found = document_->find_block(block.toStdString());
    if (found == document_->end() || (*found)->line() < 1)
        return;
    editor_->gotoLine((*found)->line(), QString());
}

void QcbsMainWindow::editorJumpToItemHelper(const QString& item)
{
    editorJumpToItemHelper(item, -1);
}

void QcbsMainWindow::editorJumpToItemHelper(const QString& item, int line)
{
    if (line > 0) {
        editor_->gotoLine(line, item);
        return;
    }
    for (QTextBlock block = editor_->document()->begin(); block.isValid(); block = block.next())
        if (block.text().simplified().section(QLatin1Char(' '), 0, 0).compare(item, Qt::CaseInsensitive) ==
            0) {
            editor_->gotoLine(block.blockNumber() + 1, item);
            return;
        }
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
    event->accept();
}

void QcbsMainWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        shared().lastActive = this;
    QMainWindow::changeEvent(event);
}
