#include "QcbsLineNumberedTextEdit.h"

#include "QcbsLineNumberView.h"
#include "QcbsRichTextEdit.h"

#include <QHBoxLayout>

QcbsLineNumberedTextEdit::QcbsLineNumberedTextEdit(QWidget* parent)
    : QWidget(parent), editor_(new QcbsRichTextEdit(this)), view_(new QcbsLineNumberView(editor_, this)),
      layout_(new QHBoxLayout(this))
{
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    layout_->addWidget(view_);
    layout_->addWidget(editor_);
    setFocusProxy(editor_);

    // Any scroll or repaint of the editor's lines repaints the numbers with them. A direct
    // connection to the view, which the editor may still signal while this widget is destroyed.
    connect(editor_, &QPlainTextEdit::updateRequest, view_, qOverload<>(&QWidget::update));
    connect(editor_, &QcbsRichTextEdit::numberOfLinesChanged, view_, &QcbsLineNumberView::setNumberOfLines);
    connect(editor_, &QcbsRichTextEdit::normalFontChanged, view_, &QcbsLineNumberView::setFont);
}

void QcbsLineNumberedTextEdit::setShowLineNumbers(bool show)
{
    if (show == show_line_numbers_)
        return;
    show_line_numbers_ = show;
    view_->setVisible(show);
    if (show)
        view_->update();
}
