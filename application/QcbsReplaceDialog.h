#ifndef CIFWARD_QCBSREPLACEDIALOG_H
#define CIFWARD_QCBSREPLACEDIALOG_H

#include "QcbsSearchDialog.h"

// "Replace Text": one for the whole process, like the find dialog, with the replacement and its
// own history. Replace finds first and replaces on the second press; Replace All changes every
// match of the whole text in one step that a single Undo takes back.
class QcbsReplaceDialog : public QcbsSearchDialog {
    Q_OBJECT
public:
    static QcbsReplaceDialog* instance();
    static QcbsReplaceDialog* existing();

    QComboBox* replaceCombo() const { return comboReplace_; }

public slots:
    void init() override;
    void doReplace();
    void doReplaceAll();

protected:
    void publish() override;

private:
    explicit QcbsReplaceDialog(QWidget* parent = nullptr);

    QComboBox* comboReplace_;
};

#endif
