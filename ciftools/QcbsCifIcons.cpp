#include "QcbsCifIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <array>
#include <functional>

namespace {

// Every picture is drawn on a grid of 16 by 16 units and scaled to each size, so that the small
// size is not a shrunken large one but the same drawing with its lines on whole pixels.
using Drawing = std::function<void(QPainter&)>;

const int sizes[] = {16, 20, 24, 32, 40, 48, 64};

QIcon render(const Drawing& draw)
{
    QIcon icon;
    for (int size : sizes) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 16.0, size / 16.0);
        draw(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QPen outline(const QColor& color, qreal width = 1.0)
{
    QPen pen(color, width);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
    return pen;
}

// A luggage tag: the sign of one data name.
QPainterPath tagShape()
{
    QPainterPath path;
    path.moveTo(1.5, 8.0);
    path.lineTo(5.5, 3.5);
    path.lineTo(14.5, 3.5);
    path.lineTo(14.5, 12.5);
    path.lineTo(5.5, 12.5);
    path.closeSubpath();
    return path;
}

void drawTag(QPainter& p, const QColor& fill, const QColor& line)
{
    p.setPen(outline(line));
    p.setBrush(fill);
    p.drawPath(tagShape());
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(5.2, 8.0), 1.1, 1.1);
    p.setPen(outline(line, 0.9));
    p.drawLine(QPointF(8.0, 6.5), QPointF(12.5, 6.5));
    p.drawLine(QPointF(8.0, 9.5), QPointF(11.0, 9.5));
}

const QColor tagFill(207, 227, 251);
const QColor tagLine(36, 84, 150);

void drawDataItem(QPainter& p)
{
    drawTag(p, tagFill, tagLine);
}

void drawFailingItem(QPainter& p)
{
    drawTag(p, tagFill, tagLine);
    p.setPen(outline(QColor(120, 10, 10), 0.8));
    p.setBrush(QColor(214, 45, 32));
    p.drawEllipse(QPointF(11.5, 11.5), 4.0, 4.0);
    p.setPen(outline(Qt::white, 1.6));
    p.drawLine(QPointF(11.5, 9.0), QPointF(11.5, 12.0));
    p.drawPoint(QPointF(11.5, 14.0));
}

void drawMissingItem(QPainter& p)
{
    QPen pen = outline(QColor(140, 140, 140));
    pen.setDashPattern({1.5, 1.5});
    p.setPen(pen);
    p.setBrush(QColor(255, 255, 255, 200));
    p.drawPath(tagShape());
    p.setPen(outline(QColor(170, 170, 170), 0.9));
    p.drawEllipse(QPointF(5.2, 8.0), 1.1, 1.1);
}

void drawLoopedItem(QPainter& p)
{
    drawTag(p, tagFill, tagLine);
    // A small table: the item is one column of a loop.
    p.setPen(outline(QColor(20, 90, 40), 0.8));
    p.setBrush(QColor(46, 160, 80));
    p.drawRoundedRect(QRectF(8.0, 8.0, 7.5, 7.5), 1.2, 1.2);
    p.setPen(outline(Qt::white, 1.0));
    for (qreal y : {10.2, 11.8, 13.4})
        p.drawLine(QPointF(9.6, y), QPointF(13.9, y));
}

const QColor folderFill(244, 197, 66);
const QColor folderLine(150, 110, 10);

void drawCategoryClosed(QPainter& p)
{
    p.setPen(outline(folderLine));
    p.setBrush(folderFill.darker(110));
    QPainterPath tab;
    tab.moveTo(1.5, 4.5);
    tab.lineTo(1.5, 3.0);
    tab.lineTo(6.0, 3.0);
    tab.lineTo(7.5, 4.5);
    tab.closeSubpath();
    p.drawPath(tab);
    p.setBrush(folderFill);
    p.drawRoundedRect(QRectF(1.5, 4.5, 13.0, 9.0), 1.0, 1.0);
}

void drawCategoryOpen(QPainter& p)
{
    p.setPen(outline(folderLine));
    p.setBrush(folderFill.darker(115));
    QPainterPath back;
    back.moveTo(1.5, 13.5);
    back.lineTo(1.5, 3.0);
    back.lineTo(6.0, 3.0);
    back.lineTo(7.5, 4.5);
    back.lineTo(13.0, 4.5);
    back.lineTo(13.0, 7.0);
    p.drawPath(back);
    p.setBrush(QColor(255, 250, 235));
    p.drawRect(QRectF(3.0, 5.5, 9.0, 5.0));
    p.setBrush(folderFill);
    QPainterPath front;
    front.moveTo(1.5, 13.5);
    front.lineTo(4.0, 7.5);
    front.lineTo(15.0, 7.5);
    front.lineTo(12.5, 13.5);
    front.closeSubpath();
    p.drawPath(front);
}

const QColor boxFill(200, 136, 74);
const QColor boxLine(110, 62, 20);

// A carton: one data block of the file.
void drawBlockClosed(QPainter& p)
{
    p.setPen(outline(boxLine));
    p.setBrush(boxFill);
    p.drawRect(QRectF(2.0, 6.0, 12.0, 8.5));
    p.setBrush(boxFill.lighter(115));
    p.drawRect(QRectF(1.0, 3.5, 14.0, 3.0));
    p.setPen(outline(boxLine, 0.9));
    p.drawLine(QPointF(6.0, 9.0), QPointF(10.0, 9.0));
}

void drawBlockOpen(QPainter& p)
{
    p.setPen(outline(boxLine));
    p.setBrush(boxFill.darker(125));
    p.drawRect(QRectF(2.0, 6.0, 12.0, 2.0));
    p.setBrush(boxFill.lighter(115));
    QPainterPath left;
    left.moveTo(2.0, 6.0);
    left.lineTo(0.5, 2.0);
    left.lineTo(5.0, 1.5);
    left.lineTo(6.0, 6.0);
    QPainterPath right;
    right.moveTo(14.0, 6.0);
    right.lineTo(15.5, 2.0);
    right.lineTo(11.0, 1.5);
    right.lineTo(10.0, 6.0);
    p.drawPath(left);
    p.drawPath(right);
    p.setBrush(boxFill);
    p.drawRect(QRectF(2.0, 8.0, 12.0, 6.5));
    p.setPen(outline(boxLine, 0.9));
    p.drawLine(QPointF(6.0, 11.0), QPointF(10.0, 11.0));
}

void drawHelp(QPainter& p)
{
    p.setPen(outline(QColor(20, 60, 130)));
    p.setBrush(QColor(52, 120, 210));
    p.drawEllipse(QPointF(8.0, 8.0), 6.8, 6.8);
    QPainterPath mark;
    mark.moveTo(5.8, 6.2);
    mark.cubicTo(5.8, 3.2, 10.4, 3.2, 10.4, 6.0);
    mark.cubicTo(10.4, 7.8, 8.0, 7.8, 8.0, 9.8);
    p.setPen(outline(Qt::white, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawPath(mark);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(8.0, 12.4), 1.1, 1.1);
}

void drawWarning(QPainter& p)
{
    QPainterPath triangle;
    triangle.moveTo(8.0, 1.2);
    triangle.lineTo(15.2, 14.5);
    triangle.lineTo(0.8, 14.5);
    triangle.closeSubpath();
    p.setPen(outline(QColor(150, 100, 0)));
    p.setBrush(QColor(255, 200, 30));
    p.drawPath(triangle);
    p.setPen(outline(Qt::black, 1.7));
    p.drawLine(QPointF(8.0, 5.5), QPointF(8.0, 9.8));
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::black);
    p.drawEllipse(QPointF(8.0, 12.3), 1.0, 1.0);
}

} // namespace

// The pictures live until the process ends: a pixmap must not outlive the application object, so
// they are never destroyed by a static destructor that runs after it.
QIcon QcbsCifIcons::boxIcon(int index)
{
    static const auto* icons = new std::array<QIcon, BoxIconCount>{
        render(drawDataItem),    render(drawCategoryClosed), render(drawCategoryOpen),
        render(drawFailingItem), render(drawBlockClosed),    render(drawBlockOpen),
        render(drawMissingItem), render(drawLoopedItem),
    };
    return index >= 0 && index < BoxIconCount ? (*icons)[std::size_t(index)] : QIcon();
}

QIcon QcbsCifIcons::help()
{
    static const auto* icon = new QIcon(render(drawHelp));
    return *icon;
}

QIcon QcbsCifIcons::warning()
{
    static const auto* icon = new QIcon(render(drawWarning));
    return *icon;
}
