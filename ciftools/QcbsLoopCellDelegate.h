#ifndef CIFWARD_QCBSLOOPCELLDELEGATE_H
#define CIFWARD_QCBSLOOPCELLDELEGATE_H

#include <QStyledItemDelegate>

// Edits a loop's cell on one line, or in a box of several lines when the value is a text field,
// so that a text field keeps its line ends through an edit.
class QcbsLoopCellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
};

#endif
