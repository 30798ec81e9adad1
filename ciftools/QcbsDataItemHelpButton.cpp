#include "QcbsDataItemHelpButton.h"

#include "QcbsCifIcons.h"

QcbsDataItemHelpButton::QcbsDataItemHelpButton(const QString& name, QWidget* parent) : QToolButton(parent)
{
    setIcon(QcbsCifIcons::help());
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setDataItemName(name);
    connect(this, &QToolButton::clicked, this, &QcbsDataItemHelpButton::requestDataItemHelp);
}

void QcbsDataItemHelpButton::setDataItemName(const QString& name)
{
    name_ = name;
    setToolTip(QStringLiteral("What the dictionary says of ") + name);
    setAccessibleName(QStringLiteral("Help on ") + name);
}

void QcbsDataItemHelpButton::requestDataItemHelp()
{
    emit dataItemHelpRequested(name_);
}
