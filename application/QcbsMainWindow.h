#ifndef CIFWARD_QCBSMAINWINDOW_H
#define CIFWARD_QCBSMAINWINDOW_H

#include "Cif.h"
#include "QcbsAppState.h"

#include <QDateTime>
#include <QMainWindow>
#include <QMap>
#include <QMessageBox>
#include <QPointer>
#include <QString>

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QPrinter;
class QProgressBar;
#include <QSplitter>
class QTabWidget;
class QToolBar;
class QUrl;
class QcbsCifBoxView;
class QcbsErrorListView;
class QcbsLineNumberedTextEdit;
class QcbsOutputPane;
class QcbsRichTextEdit;
struct QcbsPreferences;

// The hub of the program: one document (the editor's text, the master copy, and the Cif parsed
// from it), the menus and panes around it, and the life of the file on disk.
class QcbsMainWindow : public QMainWindow {
    Q_OBJECT
public:
    // Without `withDocument` the window starts empty, for a caller that loads a file into it.
    explicit QcbsMainWindow(const HQcbsAppState& state, bool withDocument = true, QWidget* parent = nullptr);
    ~QcbsMainWindow() override;

    // Values shared by every window of the process, read from the settings store.
    static QcbsPreferences& preferences();
    // The recent files, oldest first, as the shared menu lists them.
    static QStringList recentFiles();
    static QcbsMainWindow* lastActive();
    static QString untitledPrefix() { return QStringLiteral("x:/dummy/untitled"); }

    HQcbsAppState appState() const { return state_; }
    QcbsRichTextEdit* editor() const { return editor_; }
    QcbsErrorListView* errorList() const { return errorList_; }
    QcbsCifBoxView* boxView() const { return boxView_; }
    QcbsOutputPane* outputPane() const { return outputPane_; }
    QComboBox* blockCombo() const { return blockCombo_; }
    QTabWidget* tabs() const { return tabs_; }
    QWidget* editorPage() const { return editorPage_; }
    QWidget* visualiserPage() const { return visualiserPage_; }
    QString fileName() const;
    HCif document() const;
    bool hasDocument() const { return documentOpen_; }
    bool isReusable() const;
    QString statusLine() const;

    bool loadFile(const QString& path, bool report, bool showMessages);
    // Opens `path` in a window of its own; false when the file is this window's or fails to load.
    bool openInNewWindow(const QString& path, bool showMessages);
    // Lays the editor's text out on `printer` with the page footer; false when nothing printed.
    bool printTo(QPrinter& printer);

public slots:
    void fileNew();
    void fileNew(bool reuse);
    void fileNewUntitled();
    void fileOpen();
    bool fileOpen(const QString& path);
    bool fileOpen(const QString& path, bool showMessages);
    void newWindow();
    bool fileSave();
    bool fileSaveAs();
    void filePrint();
    void fileLoadRecent(int id);
    bool fileClose();
    void fileCloseRequested();
    void fileExit();
    void saveSettings();

    void editUndo();
    void editRedo();
    void editCopy();
    void editCut();
    void editPaste();
    void editInsert();
    void editInsertTemplate();
    void editSelectall();
    void editZoomin();
    void editZoomout();
    void editPrefs();
    void combine();

    void reparse();
    void dataitemHelp();
    void dataitemHelp(const QString& name);
    void setDataItem(const QString& block, const QString& name);
    void toggleBoxView();
    void loadBoxView();
    void publicationWizard();
    void crystalWizard();
    void loopEd();
    void loopNew();
    void wizardEd();
    void editFind();
    void editFindNext();
    void editFindPrevious();
    void editReplace();
    void editGotoLine();
    void hg();

    void specialCharPopUp();
    void about();
    void help();
    void helpFile(const QString& name);
    void cifwardHomePage();

    void writeToOutputPane(const QString& text);
    void writeToOutputPane(const QString& text, bool newLine);
    void statusBarMessage();
    void statusBarMessage(const QString& text);
    void restoreStatusBarMessage(QWidget* page);

    void loopUpdate(const QString& text);
    void loopAdd(const QString& text);
    void blockUpdate(const QString& text);
    void blockAdd(const QString& text);
    void dataItemUpdate(const QString& block, const QString& item, const QString& value);

    void loadMandatoryDataItemSettings();
    void processDropEvent(QDropEvent* event);
    void initialiseAllInstSettings();
    void initialiseEditorSettings();
    void updateEditorStyles();

    void enableTools(QWidget* page);
    void enableVisualiser(QWidget* page);
    void enableEditorTools(bool on);
    void enableFileTools(bool on);
    void enableParseTools(bool on);
    void enableCifTools(bool on);
    void enableFindTools(bool on);
    void enableVisTools(bool on);
    void enableAllInstParseTools();
    void enableAllInstParseTools(bool on);

    void statusLineNumber();
    void editorCursorMoved();
    void editorLineChanged(int paragraph);
    void editorTextChanged();
    void editorTextSizeChanged(int points);
    void setCaption();
    void setCaption(const QString& path);
    void setCaption(QWidget* page);

    void blockComboSelected(int index);
    void editorJumpToBlockHelper(const QString& block);
    void editorJumpToItemHelper(const QString& item);
    void editorJumpToItemHelper(const QString& item, int line);
    void editorInsertTextHelper(const QString& text);

protected:
    // Every question and message of the window passes here, so that a caller without a person
    // in front of it can answer. Returns the button chosen.
    virtual int ask(QMessageBox::Icon icon, const QString& title, const QString& text,
                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton,
                    QMessageBox::StandardButton escapeButton = QMessageBox::NoButton,
                    const QString& okText = {});
    virtual QString chooseOpenFile();
    virtual QString chooseSaveFile(const QString& proposal);
    virtual bool openUrl(const QUrl& url);
    virtual bool setUpPrinter(QPrinter& printer);
    virtual QcbsMainWindow* createWindow();

    virtual HCif parseText(const QString& text, bool report);
    virtual HCif parseFile(const QString& path, bool report);
    virtual void reportErrors(const Cif& cif);

    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct DiskStamp {
        QDateTime modified;
        qint64 size = -1;
    };

    void readPreferences();
    void buildActions();
    QAction* makeAction(const char* objectName, const QString& menuText, const QString& toolText,
                        const QString& tip, QChar key);
    void buildMenusAndToolBars();
    void buildPanes();
    void connectEditor();
    void applyTextOnButtons();
    void showNotAvailable();

    HCif parse(const std::string& text, bool report);
    void updateBlockCombo(const Cif* cif);
    void addRecentFile(const QString& path);
    bool writeDocument(const QString& path);
    DiskStamp stampOf(const QString& path) const;
    bool changedOnDisk(const QString& path) const;
    void replaceLines(int first, int last, const QString& text);
    int blockStartLine(int paragraph) const;
    int blockEndLine(int start) const;
    int loopStartLine(int paragraph) const;
    int loopEndLine(int start) const;
    // The first data name of the loop whose "loop_" stands on `line`, or the empty text.
    QString loopFirstName(int line) const;
    bool replaceDataItemPair(const QString& blockName, const QString& item, const QString& pair);
    void findAgain(bool forward);
    int currentParagraph() const;
    // The block that holds the cursor, checked first if the text changed, with the findings in
    // it; null before the first block.
    const CifDataBlock* wizardBlock(HCifErrorList& findings);

    HQcbsAppState state_;
    QString fileName_;
    HCif document_;
    bool documentOpen_ = false;
    bool latin1_ = false;
    // The file on disk is gzip-compressed; the user agreed to have it written back compressed.
    bool compressed_ = false;
    bool compressionAgreed_ = false;
    DiskStamp stamp_;
    bool boxViewVisible_ = false;
    QString editorStatus_, visualiserStatus_;

    QTabWidget* tabs_ = nullptr;
    QTabWidget* lowerTabs_ = nullptr;
    QSplitter* editorPage_ = nullptr;
    QcbsCifBoxView* boxView_ = nullptr;
    QWidget* visualiserPage_ = nullptr;
    QcbsLineNumberedTextEdit* numberedEditor_ = nullptr;
    QcbsRichTextEdit* editor_ = nullptr;
    QcbsErrorListView* errorList_ = nullptr;
    QcbsOutputPane* outputPane_ = nullptr;
    QComboBox* blockCombo_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* positionLabel_ = nullptr;
    QList<QToolBar*> toolBars_;

    QAction *fileNewAction_ = nullptr, *fileOpenAction_ = nullptr, *newWindowAction_ = nullptr,
            *fileSaveAction_ = nullptr, *fileSaveAsAction_ = nullptr, *filePrintAction_ = nullptr,
            *fileCloseAction_ = nullptr, *fileExitAction_ = nullptr;
    QAction *undoAction_ = nullptr, *redoAction_ = nullptr, *copyAction_ = nullptr, *cutAction_ = nullptr,
            *pasteAction_ = nullptr, *insertAction_ = nullptr, *templateAction_ = nullptr,
            *combineAction_ = nullptr, *selectAllAction_ = nullptr, *zoomInAction_ = nullptr,
            *zoomOutAction_ = nullptr, *prefsAction_ = nullptr;
    QAction *checkAction_ = nullptr, *itemHelpAction_ = nullptr, *browserAction_ = nullptr,
            *publicationWizardAction_ = nullptr, *crystalWizardAction_ = nullptr, *editLoopAction_ = nullptr,
            *newLoopAction_ = nullptr;
    QAction *findAction_ = nullptr, *findPreviousAction_ = nullptr, *findNextAction_ = nullptr,
            *replaceAction_ = nullptr, *gotoLineAction_ = nullptr;
    QAction *specialCharAction_ = nullptr, *aboutAction_ = nullptr, *helpAction_ = nullptr,
            *homePageAction_ = nullptr, *lumeniaAction_ = nullptr;
};

#endif
