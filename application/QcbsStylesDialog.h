#ifndef CIFWARD_QCBSSTYLESDIALOG_H
#define CIFWARD_QCBSSTYLESDIALOG_H

#include <QColor>
#include <QDialog>
#include <QFont>
#include <QStringList>

class QcbsRichTextEdit;

// Fonts and colours of the highlighting, one row of buttons for each kind of text, over a
// sample that shows every style. Each change is stored at once, so every editor can follow it.
class QcbsStylesDialog : public QDialog {
    Q_OBJECT
public:
    enum FontBase { FixedWidth, VariableWidth, NoBase };

    explicit QcbsStylesDialog(QWidget* parent = nullptr);
    using QWidget::setFont;

    static QString sampleText();
    QcbsRichTextEdit* sampler() const { return sampler_; }

signals:
    void userChangedStyle();

public slots:
    void setFontNormal();
    void setColorNormal();
    void setFontComment();
    void setColorComment();
    void setFontBlocks();
    void setColorBlocks();
    void setFontDataItems();
    void setColorDataItems();
    void setFontCustomDataItems();
    void setColorCustomDataItems();
    void setFontKeywords();
    void setColorKeywords();
    void setFontTextBlocks();
    void setColorTextBlocks();
    void setFontSpecialChars();
    void setColorSpecialChars();
    void setFontSpecialCharSymbol();
    void setColorSpecialCharSymbol();
    void setFontSupSub();
    void setColorSupSub();
    void setFontSMarkers();
    void setColorSMarkers();
    // Back to the shipped styles on the base the user chooses.
    void setFontAll();
    void refreshSampler();

    // One family and size for every style, each keeping its weight, slant and colour.
    void setFont();
    void setFont(const QString& name);
    void setColor(const QString& name);
    QFont readStyleFont(const QString& name) const;
    QColor readStyleColor(const QString& name) const;
    void saveStyleFont(const QFont& font, const QString& name);
    void saveStyleColor(const QColor& color, const QString& name);

protected:
    // The pickers and the question, apart so that they can be answered without a modal dialog.
    // Each gives false, or NoBase, when the user cancels.
    virtual bool chooseFont(QFont& font);
    virtual bool chooseColor(QColor& color);
    virtual FontBase chooseFontBase();

private:
    void changeFont(const QStringList& names);
    void changeColor(const QStringList& names);

    QcbsRichTextEdit* sampler_ = nullptr;
};

#endif
