#include "QcbsOutputPane.h"

#include "ProgramInfo.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTextCursor>
#include <memory>

QcbsOutputPane::QcbsOutputPane(QWidget* parent) : QTextEdit(parent)
{
    setReadOnly(true);
    setAcceptRichText(true);
    setUndoRedoEnabled(false);
    setAcceptDrops(false);
    setFocusPolicy(Qt::NoFocus);
    clear();
}

void QcbsOutputPane::write(const QString& text, bool newLine)
{
    moveCursor(QTextCursor::End);
    insertHtml(newLine ? QStringLiteral("<br>") + text : text);
    moveCursor(QTextCursor::End);
    ensureCursorVisible();
}

QMenu* QcbsOutputPane::createPopupMenu()
{
    auto* menu = new QMenu(this);
    menu->addAction(QStringLiteral("Select All"), this, &QTextEdit::selectAll);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Copy"), this, &QTextEdit::copy);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Clear"), this, &QcbsOutputPane::clear);
    return menu;
}

void QcbsOutputPane::clear()
{
    QTextEdit::clear();
    insertHtml(QStringLiteral("========== <font face=\"arial black,arial\" size=\"+0\">") +
               QString::fromStdString(programName()).toHtmlEscaped() +
               QStringLiteral("</font> ready ==========<br>"));
}

void QcbsOutputPane::copyAll()
{
    selectAll();
    copy();
}

void QcbsOutputPane::contextMenuEvent(QContextMenuEvent* event)
{
    const std::unique_ptr<QMenu> menu(createPopupMenu());
    menu->exec(event->globalPos());
}
