#include "QcbsLineNumberView.h"

#include "QcbsRichTextEdit.h"

#include <QPainter>

namespace {
constexpr int kMargin = 6;
}

QcbsLineNumberView::QcbsLineNumberView(QcbsRichTextEdit* editor, QWidget* parent)
    : QFrame(parent), editor_(editor)
{
    setFrameStyle(QFrame::NoFrame);
    setBackgroundRole(QPalette::AlternateBase);
    setAutoFillBackground(true);
    QFrame::setFont(editor->normalFont());
    setNumberOfLines(editor->document()->blockCount());
}

void QcbsLineNumberView::setNumberOfLines(int lines)
{
    if (lines == nlines_)
        return;
    nlines_ = lines;
    fitWidth();
    update();
}

void QcbsLineNumberView::setFont(const QFont& font)
{
    QFrame::setFont(font);
    fitWidth();
    update();
}

void QcbsLineNumberView::fitWidth()
{
    // The average width of a digit, so that a proportional font still fits its widest numbers.
    const qreal digit = fontMetrics().horizontalAdvance(QStringLiteral("0123456789")) / 10.0;
    const int width = qCeil(digit * QString::number(std::max(1, nlines_)).size()) + 2 * kMargin;
    setFixedWidth(width);
}

void QcbsLineNumberView::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    // Lines are placed where the editor's viewport shows them, which sits inside its frame.
    const int shift = editor_->viewport()->mapTo(window(), QPoint()).y() - mapTo(window(), QPoint()).y();
    for (const QcbsRichTextEdit::VisibleLine& line : editor_->visibleLines()) {
        const QRect box(0, line.top + shift, width() - kMargin, line.height);
        if (box.top() > event->rect().bottom())
            break;
        if (box.bottom() >= event->rect().top())
            painter.drawText(box, Qt::AlignRight | Qt::AlignTop, QString::number(line.paragraph + 1));
    }
}
