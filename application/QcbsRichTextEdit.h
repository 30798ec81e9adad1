#ifndef CIFWARD_QCBSRICHTEXTEDIT_H
#define CIFWARD_QCBSRICHTEXTEDIT_H

#include <QColor>
#include <QFont>
#include <QPlainTextEdit>
#include <QString>

class QMenu;
class QcbsSyntaxHighlighter_CIF;

// The CIF editor: plain text coloured by the CIF highlighter, with the error and go-to marks that
// the error list and the go-to tools place, zoom, file insertion, and a clipboard that turns
// characters outside ASCII into their CIF escapes. The same class shows help and sample text in
// its read-only form.
class QcbsRichTextEdit : public QPlainTextEdit {
    Q_OBJECT
public:
    // The two marks a line can carry: the line of a finding, and the line the user went to.
    enum MarkKind { ErrorMark = 1, GotoMark = 2 };

    explicit QcbsRichTextEdit(QWidget* parent = nullptr, bool applyStyles = true);
    ~QcbsRichTextEdit() override;

    // Replaces the whole text and lays it out again; the document counts as unmodified.
    void setText(const QString& text);
    QString text() const { return toPlainText(); }

    bool parsed() const { return parsed_; }
    void setParsed(bool parsed) { parsed_ = parsed; }

    // The help-text form: read only, and a context menu of "Select All" and "Copy".
    void setReadOnlyMenu(bool readOnlyMenu);
    bool readOnlyMenu() const { return readOnlyMenu_; }

    // The line count of the text that the last check saw: the error marks address its lines and
    // stay valid only while the count is the same.
    void setLinesAtCheck(int lines) { linesAtCheck_ = lines; }
    int linesAtCheck() const { return linesAtCheck_; }
    // The paragraph (from 0) that carries the mark, or -1.
    int markedParagraph(MarkKind kind) const { return errorLine_[kind - 1]; }
    static QColor markColor(MarkKind kind);

    // The template that "Insert Template" inserts; one path for the whole process.
    static QString templateFile();
    static void setTemplateFile(const QString& path);

    QcbsSyntaxHighlighter_CIF* highlighter() const { return highlighter_; }

    // Tests on the cursor's line, on its text without leading and trailing white space.
    bool isLoopLine() const;
    bool isCommentLine() const;
    bool isBlankLine() const;
    bool isInTextBlock() const;
    // The data name on the cursor's line, or the empty text. With `withValue` a blank line stands
    // for the name on the line before it (a value on a line of its own). Without `wholeWord` the
    // whole stripped line is returned instead of the name alone.
    QString currentDataItem(bool wholeWord = true, bool withValue = true) const;
    QString dataItemAt(int paragraph, bool wholeWord = true, bool withValue = true) const;

    // The menu the context menu event shows, built anew for the given viewport position.
    QMenu* createPopupMenu(const QPoint& position);

    // The lines on screen, for the line number view: paragraph, and top and height in viewport
    // coordinates.
    struct VisibleLine {
        int paragraph;
        int top;
        int height;
    };
    QList<VisibleLine> visibleLines() const;

public slots:
    void setErrorHighlighting(int line, int column);
    void setErrorHighlighting(int line, int column, bool clearFirst);
    void clearErrorHighlighting();
    void gotoLine(int line, const QString& text);
    void gotoLine(int line, const QString& text, bool clearMarks);
    void insertTemplateFile();
    void insertFile();
    void insertFile(const QString& path);
    void textHasChanged();
    void bigger();
    void smaller();
    void changeSize(int points);
    QFont normalFont() const { return normalFont_; }
    void setRemoveMarkers(bool remove);
    void refreshText();
    void copy();
    void processStyles();
    void resetToDefaultStyles();
    void resetToDefaultStyles(bool fixedWidth);
    void paste();
    void cursorPositionHasChanged();
    void selectionHasChanged();
    void prepareDataitemHelp();

signals:
    void dropEventRequest(QDropEvent* event);
    void normalFontChanged(const QFont& font);
    void textSizeChanged(int pointSize);
    void numberOfLinesChanged(int lines);
    void cursorLineChanged(int paragraph);
    void requestDataitemHelp(const QString& name);
    void intervalChanged();
    void clearErrorMarker();
    void statusBarMessageRequest(const QString& message);
    void requestGotoLine(int line, const QString& text);
    void requestHighlightLine(int line, int column, bool clearFirst);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void setMark(MarkKind kind, int paragraph);
    void clearMarks();
    void showMarks();
    void setBaseFont(const QFont& font);
    QString repairTyped(const QString& typed) const;
    void paintGreekLetters(const QRect& area);

    bool parsed_ = false;
    bool readOnlyMenu_ = false;
    int lastCursorParagraph_ = -1;
    int linesAtCheck_ = -1;
    int errorLine_[2] = {-1, -1};
    QFont normalFont_;
    QcbsSyntaxHighlighter_CIF* highlighter_ = nullptr;
    QString dataItemName_;
};

#endif
