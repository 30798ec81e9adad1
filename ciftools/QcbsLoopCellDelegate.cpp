#include "QcbsLoopCellDelegate.h"

#include <QPlainTextEdit>

QWidget* QcbsLoopCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const
{
    if (!index.data(Qt::EditRole).toString().contains(QLatin1Char('\n')))
        return QStyledItemDelegate::createEditor(parent, option, index);
    auto* editor = new QPlainTextEdit(parent);
    editor->setObjectName(QStringLiteral("textFieldEditor"));
    editor->setTabChangesFocus(true);
    return editor;
}

void QcbsLoopCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* text = qobject_cast<QPlainTextEdit*>(editor))
        text->setPlainText(index.data(Qt::EditRole).toString());
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void QcbsLoopCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const
{
    if (auto* text = qobject_cast<QPlainTextEdit*>(editor))
        model->setData(index, text->toPlainText(), Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

void QcbsLoopCellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                const QModelIndex& index) const
{
    if (!qobject_cast<QPlainTextEdit*>(editor)) {
        QStyledItemDelegate::updateEditorGeometry(editor, option, index);
        return;
    }
    // Room for a few lines below the cell, wider than a column.
    QRect area = option.rect;
    area.setWidth(std::max(area.width(), 360));
    area.setHeight(std::max(area.height(), editor->fontMetrics().lineSpacing() * 6));
    editor->setGeometry(area);
}
