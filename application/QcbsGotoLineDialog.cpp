#include "QcbsGotoLineDialog.h"

#include "QcbsRichTextEdit.h"

#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextDocument>

QcbsGotoLineDialog::QcbsGotoLineDialog(QWidget* parent) : QDialog(parent), entry_(new QLineEdit(this))
{
    setObjectName(QStringLiteral("goto line"));
    setWindowTitle(QStringLiteral("Go to Line"));
    auto* label = new QLabel(QStringLiteral("Go to line:"), this);
    label->setBuddy(entry_);
    entry_->setObjectName(QStringLiteral("entry"));
    entry_->setValidator(new QIntValidator(1, 999999999, entry_));
    auto* go = new QPushButton(QStringLiteral("&Go"), this);
    go->setObjectName(QStringLiteral("buttonGo"));
    go->setDefault(true);
    go->setToolTip(QStringLiteral("Move the cursor to that line (Return)"));
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setAutoDefault(false);

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(entry_);
    layout->addWidget(go);
    layout->addWidget(close);

    connect(go, &QPushButton::clicked, this, &QcbsGotoLineDialog::doIt);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void QcbsGotoLineDialog::setEditor(QcbsRichTextEdit* editor)
{
    editor_ = editor;
    if (editor)
        entry_->setToolTip(QStringLiteral("A line from 1 to %1").arg(editor->document()->blockCount()));
}

void QcbsGotoLineDialog::doIt()
{
    if (editor_)
        editor_->gotoLine(entry_->text().toInt(), QString());
    close();
}
