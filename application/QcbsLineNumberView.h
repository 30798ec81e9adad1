#ifndef CIFWARD_QCBSLINENUMBERVIEW_H
#define CIFWARD_QCBSLINENUMBERVIEW_H

#include <QFrame>

class QcbsRichTextEdit;

// The column of line numbers beside the editor, right-aligned, following the editor's scrolling
// and font, as wide as the largest number needs.
class QcbsLineNumberView : public QFrame {
    Q_OBJECT
public:
    explicit QcbsLineNumberView(QcbsRichTextEdit* editor, QWidget* parent = nullptr);

    int numberOfLines() const { return nlines_; }

public slots:
    void setNumberOfLines(int lines);
    void setFont(const QFont& font);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fitWidth();

    int nlines_ = 0;
    QcbsRichTextEdit* editor_;
};

#endif
