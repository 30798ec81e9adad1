#ifndef CIFWARD_QCBSDATAITEMHELPBUTTON_H
#define CIFWARD_QCBSDATAITEMHELPBUTTON_H

#include <QString>
#include <QToolButton>

// The small button beside a field that asks for the help on the field's data name; whoever
// shows the help connects to its request.
class QcbsDataItemHelpButton : public QToolButton {
    Q_OBJECT
public:
    explicit QcbsDataItemHelpButton(const QString& name = QString(), QWidget* parent = nullptr);

    const QString& dataItemName() const { return name_; }
    void setDataItemName(const QString& name);

public slots:
    void requestDataItemHelp();

signals:
    void dataItemHelpRequested(const QString& name);

private:
    QString name_;
};

#endif
