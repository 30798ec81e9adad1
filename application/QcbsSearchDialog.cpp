#include "QcbsSearchDialog.h"

#include "QcbsMainWindow.h"
#include "QcbsPreferences.h"
#include "QcbsRichTextEdit.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QTextDocument>
#include <QVBoxLayout>

QcbsSearchDialog::QcbsSearchDialog(const QString& objectName, const QString& caption, QWidget* parent)
    : QDialog(parent), findLabel_(new QLabel(QStringLiteral("&Find:"), this)),
      comboFind_(new QComboBox(this)), direction_(new QGroupBox(QStringLiteral("&Direction"), this)),
      radioForward_(new QRadioButton(QStringLiteral("Forwar&d"), direction_)),
      radioBackward_(new QRadioButton(QStringLiteral("&Backward"), direction_)),
      options_(new QGroupBox(QStringLiteral("&Options"), this)),
      checkWords_(new QCheckBox(QStringLiteral("&Whole words only"), options_)),
      checkCase_(new QCheckBox(QStringLiteral("&Case sensitive"), options_)),
      checkBegin_(new QCheckBox(QStringLiteral("Start at &Beginning"), options_))
{
    setObjectName(objectName);
    setWindowTitle(caption);
    setModal(false);
    comboFind_->setObjectName(QStringLiteral("comboFind"));
    comboFind_->setEditable(true);
    comboFind_->setInsertPolicy(QComboBox::NoInsert);
    comboFind_->setMaxCount(historyLength);
    comboFind_->setMinimumContentsLength(24);
    comboFind_->setToolTip(
        QStringLiteral("The text to look for; the list holds the last %1").arg(historyLength));
    findLabel_->setBuddy(comboFind_);
    radioForward_->setObjectName(QStringLiteral("radioForward"));
    radioBackward_->setObjectName(QStringLiteral("radioBackward"));
    checkWords_->setObjectName(QStringLiteral("checkWords"));
    checkCase_->setObjectName(QStringLiteral("checkCase"));
    checkBegin_->setObjectName(QStringLiteral("checkBegin"));
    checkBegin_->setToolTip(QStringLiteral("Search from the start (or, backward, the end) of the text; "
                                           "ticked by itself when a search finds nothing, so that the next "
                                           "press wraps round"));
    auto* directionLayout = new QVBoxLayout(direction_);
    directionLayout->addWidget(radioForward_);
    directionLayout->addWidget(radioBackward_);
    auto* optionsLayout = new QVBoxLayout(options_);
    optionsLayout->addWidget(checkWords_);
    optionsLayout->addWidget(checkCase_);
    optionsLayout->addWidget(checkBegin_);
    init();
}

void QcbsSearchDialog::init()
{
    const QcbsPreferences& prefs = QcbsMainWindow::preferences();
    comboFind_->clear();
    comboFind_->addItems(prefs.findRecent.mid(0, historyLength));
    checkCase_->setChecked(prefs.findCheckCase);
    checkWords_->setChecked(prefs.findCheckWords);
    radioForward_->setChecked(prefs.findForward);
    radioBackward_->setChecked(!prefs.findForward);
}

void QcbsSearchDialog::publish()
{
    QcbsPreferences& prefs = QcbsMainWindow::preferences();
    prefs.findRecent.clear();
    for (int i = 0; i < comboFind_->count(); ++i)
        prefs.findRecent << comboFind_->itemText(i);
    prefs.findCheckCase = checkCase_->isChecked();
    prefs.findCheckWords = checkWords_->isChecked();
    prefs.findForward = radioForward_->isChecked();
}

void QcbsSearchDialog::destroy()
{
    publish();
    QcbsMainWindow::preferences().writeSearchValues();
}

void QcbsSearchDialog::hideEvent(QHideEvent* event)
{
    destroy();
    QDialog::hideEvent(event);
}

void QcbsSearchDialog::setEditor(QcbsRichTextEdit* editor)
{
    editor_ = editor;
}

QcbsRichTextEdit* QcbsSearchDialog::targetEditor()
{
    if (!editor_) {
        QcbsMainWindow* window = QcbsMainWindow::lastActive();
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (!window)
                window = qobject_cast<QcbsMainWindow*>(widget);
        if (window)
            editor_ = window->editor();
    }
    return editor_;
}

void QcbsSearchDialog::remember(QComboBox* combo, const QString& text)
{
    if (text.isEmpty() || (combo->count() > 0 && combo->itemText(0) == text))
        return;
    for (int i = combo->count() - 1; i >= 0; --i)
        if (combo->itemText(i) == text)
            combo->removeItem(i);
    while (combo->count() >= historyLength)
        combo->removeItem(combo->count() - 1);
    combo->insertItem(0, text);
    combo->setCurrentIndex(0);
}

bool QcbsSearchDialog::findIn(QcbsRichTextEdit* editor, const QString& text, bool caseSensitive,
                              bool wholeWords, bool forward, bool fromEnd)
{
    QTextDocument::FindFlags flags;
    if (caseSensitive)
        flags |= QTextDocument::FindCaseSensitively;
    if (wholeWords)
        flags |= QTextDocument::FindWholeWords;
    if (!forward)
        flags |= QTextDocument::FindBackward;
    QTextCursor from = editor->textCursor();
    if (fromEnd) {
        from = QTextCursor(editor->document());
        from.movePosition(forward ? QTextCursor::Start : QTextCursor::End);
    }
    // A selection is passed over, so that pressing again finds the next match, not this one.
    const QTextCursor found = editor->document()->find(text, from, flags);
    if (found.isNull())
        return false;
    editor->setTextCursor(found);
    editor->ensureCursorVisible();
    return true;
}

bool QcbsSearchDialog::search()
{
    const QString text = comboFind_->currentText();
    if (text.isEmpty())
        return false;
    remember(comboFind_, text);
    QcbsRichTextEdit* editor = targetEditor();
    publish();
    if (!editor)
        return false;
    const bool found = findIn(editor, text, checkCase_->isChecked(), checkWords_->isChecked(),
                              radioForward_->isChecked(), checkBegin_->isChecked());
    checkBegin_->setChecked(!found);
    if (!found)
        QApplication::beep();
    return found;
}

void QcbsSearchDialog::doFind()
{
    search();
}
