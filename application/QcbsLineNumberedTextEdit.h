#ifndef CIFWARD_QCBSLINENUMBEREDTEXTEDIT_H
#define CIFWARD_QCBSLINENUMBEREDTEXTEDIT_H

#include <QWidget>

class QHBoxLayout;
class QcbsLineNumberView;
class QcbsRichTextEdit;

// The editor with its line numbers beside it; the numbers can be hidden.
class QcbsLineNumberedTextEdit : public QWidget {
    Q_OBJECT
public:
    explicit QcbsLineNumberedTextEdit(QWidget* parent = nullptr);

    QcbsRichTextEdit* editor() const { return editor_; }
    QcbsLineNumberView* lineNumberView() const { return view_; }
    bool showLineNumbers() const { return show_line_numbers_; }

public slots:
    void setShowLineNumbers(bool show);

private:
    bool show_line_numbers_ = true;
    QcbsRichTextEdit* editor_;
    QcbsLineNumberView* view_;
    QHBoxLayout* layout_;
};

#endif
