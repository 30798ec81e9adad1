#include "QcbsReplaceDialog.h"

#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>
#include <algorithm>

namespace {

QPointer<QcbsReplaceDialog>& shared()
{
    static QPointer<QcbsReplaceDialog> dialog;
    return dialog;
}

} // namespace

QcbsReplaceDialog* QcbsReplaceDialog::instance()
{
    if (!shared())
        shared() = new QcbsReplaceDialog;
    return shared();
}

QcbsReplaceDialog* QcbsReplaceDialog::existing()
{
    return shared();
}

QcbsReplaceDialog::QcbsReplaceDialog(QWidget* parent)
    : QcbsSearchDialog(QStringLiteral("ReplaceDialog"), QStringLiteral("Replace Text"), parent),
      comboReplace_(new QComboBox(this))
{
    comboReplace_->setObjectName(QStringLiteral("comboReplace"));
    comboReplace_->setEditable(true);
    comboReplace_->setInsertPolicy(QComboBox::NoInsert);
    comboReplace_->setMaxCount(historyLength);
    comboReplace_->setToolTip(QStringLiteral("The text that takes the place of each match"));
    auto* replaceLabel = new QLabel(QStringLiteral("Re&place with:"), this);
    replaceLabel->setBuddy(comboReplace_);

    const auto button = [this](const char* name, const QString& text, const QString& tip) {
        auto* b = new QPushButton(text, this);
        b->setObjectName(QLatin1String(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        return b;
    };
    QPushButton* findNext = button("buttonFindNext", QStringLiteral("&Find Next"),
                                   QStringLiteral("Find the next match (Return)"));
    findNext->setDefault(true);
    QPushButton* replace = button("buttonReplace", QStringLiteral("&Replace"),
                                  QStringLiteral("Replace the selected match and find the next; "
                                                 "without a match selected, find it first"));
    QPushButton* replaceAll =
        button("buttonReplaceAll", QStringLiteral("Replace &All"),
               QStringLiteral("Replace every match in the whole text, whatever the "
                              "direction and the whole-word option; one Undo takes it back"));
    QPushButton* close = button("buttonClose", QStringLiteral("Close"), QStringLiteral("Close (Escape)"));

    auto* layout = new QGridLayout(this);
    layout->addWidget(findLabel_, 0, 0);
    layout->addWidget(comboFind_, 0, 1, 1, 2);
    layout->addWidget(replaceLabel, 1, 0);
    layout->addWidget(comboReplace_, 1, 1, 1, 2);
    layout->addWidget(direction_, 2, 0, 1, 2);
    layout->addWidget(options_, 2, 2);
    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {findNext, replace, replaceAll, close})
        buttons->addWidget(b);
    buttons->addStretch();
    layout->addLayout(buttons, 0, 3, 3, 1);

    connect(findNext, &QPushButton::clicked, this, &QcbsSearchDialog::doFind);
    connect(replace, &QPushButton::clicked, this, &QcbsReplaceDialog::doReplace);
    connect(replaceAll, &QPushButton::clicked, this, &QcbsReplaceDialog::doReplaceAll);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    init();
}

void QcbsReplaceDialog::init()
{
    QcbsSearchDialog::init();
    comboReplace_->clear();
    comboReplace_->addItems(QcbsMainWindow::preferences().replaceRecent.mid(0, historyLength));
}

void QcbsReplaceDialog::publish()
{
    QcbsSearchDialog::publish();
    QStringList& recent = QcbsMainWindow::preferences().replaceRecent;
    recent.clear();
    for (int i = 0; i < comboReplace_->count(); ++i)
        recent << comboReplace_->itemText(i);
}

void QcbsReplaceDialog::doReplace()
{
    QcbsRichTextEdit* editor = targetEditor();
    if (!editor)
        return;
    const QString text = comboFind_->currentText();
    const QString replacement = comboReplace_->currentText();
    remember(comboReplace_, replacement);
    QTextCursor cursor = editor->textCursor();
    const Qt::CaseSensitivity cs = checkCase_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
    if (!text.isEmpty() && cursor.hasSelection() && cursor.selectedText().compare(text, cs) == 0) {
        cursor.insertText(replacement);
        editor->setTextCursor(cursor);
    }
    doFind();
}

void QcbsReplaceDialog::doReplaceAll()
{
    QcbsRichTextEdit* editor = targetEditor();
    const QString text = comboFind_->currentText();
    if (!editor || text.isEmpty())
        return;
    const QString replacement = comboReplace_->currentText();
    remember(comboFind_, text);
    remember(comboReplace_, replacement);
    publish();

    const QString whole = editor->toPlainText();
    const Qt::CaseSensitivity cs = checkCase_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
    // The text is taken literally: no character of it means anything to the search.
    QList<qsizetype> matches;
    for (qsizetype at = whole.indexOf(text, 0, cs); at >= 0; at = whole.indexOf(text, at + text.size(), cs))
        matches.append(at);
    if (matches.isEmpty()) {
        QApplication::beep();
        return;
    }
    // Every match replaced where it stands, the last first so that the earlier ones keep their
    // places, all in one edit: one Undo brings the old text back, and the lines without a match
    // are neither laid out nor coloured again.
    const int position = editor->textCursor().position();
    QTextCursor cursor(editor->document());
    cursor.beginEditBlock();
    for (auto it = matches.crbegin(); it != matches.crend(); ++it) {
        cursor.setPosition(int(*it));
        cursor.setPosition(int(*it + text.size()), QTextCursor::KeepAnchor);
        cursor.insertText(replacement);
    }
    cursor.endEditBlock();
    cursor.setPosition(std::min<int>(position, editor->document()->characterCount() - 1));
    editor->setTextCursor(cursor);
}
