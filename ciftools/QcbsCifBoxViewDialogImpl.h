#ifndef CIFWARD_QCBSCIFBOXVIEWDIALOGIMPL_H
#define CIFWARD_QCBSCIFBOXVIEWDIALOGIMPL_H

#include "Cif.h"

#include <QDialog>
#include <QString>

class QLineEdit;
class QPushButton;
class QcbsCifBoxView;

// Asks for a data name: typed, or picked from the box view of the file, where the names a block
// lacks show greyed.
class QcbsCifBoxViewDialogImpl : public QDialog {
    Q_OBJECT
public:
    explicit QcbsCifBoxViewDialogImpl(const HCif& cif, QWidget* parent = nullptr);

    QcbsCifBoxView* boxView() const { return cifBoxView_; }
    QString text() const;

public slots:
    void setText(const QString& name);
    void slotOK();
    void slotCancel();

signals:
    void insertTextRequest(const QString& name);

private:
    QcbsCifBoxView* cifBoxView_;
    QLineEdit* lineEdit_;
    QPushButton* okButton;
    QPushButton* cancelButton;
};

#endif
