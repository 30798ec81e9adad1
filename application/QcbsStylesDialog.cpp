#include "QcbsStylesDialog.h"

#include "ProgramInfo.h"
#include "QcbsRichTextEdit.h"
#include "QcbsStyleStore.h"

#include <QColorDialog>
#include <QFontDialog>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString symbolStyle = QStringLiteral("SpecialCharSymbol");

QPushButton* button(const QString& text, const QString& name)
{
    auto* push = new QPushButton(text);
    push->setObjectName(name);
    return push;
}

} // namespace

QcbsStylesDialog::QcbsStylesDialog(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Styles"));

    auto* title = new QLabel(tr("A sample of each style"));
    sampler_ = new QcbsRichTextEdit(this, true);
    sampler_->setObjectName(QStringLiteral("sampler"));
    sampler_->setText(sampleText());
    sampler_->setReadOnlyMenu(true);
    // Room for the whole sample, a line of which stands for each style.
    const int sampleLines = sampleText().count(QLatin1Char('\n')) + 2;
    sampler_->setMinimumHeight(QFontMetrics(sampler_->normalFont()).lineSpacing() * sampleLines);

    using Slot = void (QcbsStylesDialog::*)();
    struct Row {
        const char* label;
        const char* name;
        Slot font;
        Slot color;
    };
    const Row rows[] = {
        {"Normal text", "normal", &QcbsStylesDialog::setFontNormal, &QcbsStylesDialog::setColorNormal},
        {"Comments", "comments", &QcbsStylesDialog::setFontComment, &QcbsStylesDialog::setColorComment},
        {"Data blocks", "blocks", &QcbsStylesDialog::setFontBlocks, &QcbsStylesDialog::setColorBlocks},
        {"Data items", "dataItems", &QcbsStylesDialog::setFontDataItems,
         &QcbsStylesDialog::setColorDataItems},
        {"Custom Data items", "customDataItems", &QcbsStylesDialog::setFontCustomDataItems,
         &QcbsStylesDialog::setColorCustomDataItems},
        {"Other keywords", "keywords", &QcbsStylesDialog::setFontKeywords,
         &QcbsStylesDialog::setColorKeywords},
        {"Text blocks", "textBlocks", &QcbsStylesDialog::setFontTextBlocks,
         &QcbsStylesDialog::setColorTextBlocks},
        {"Special characters", "specialChars", &QcbsStylesDialog::setFontSpecialChars,
         &QcbsStylesDialog::setColorSpecialChars},
        {"Special symbols", "specialSymbols", &QcbsStylesDialog::setFontSpecialCharSymbol,
         &QcbsStylesDialog::setColorSpecialCharSymbol},
        {"Super/subscript", "supSub", &QcbsStylesDialog::setFontSupSub, &QcbsStylesDialog::setColorSupSub},
        {"Markers", "markers", &QcbsStylesDialog::setFontSMarkers, &QcbsStylesDialog::setColorSMarkers},
    };
    auto* grid = new QGridLayout;
    for (const Row& row : rows) {
        const int at = grid->rowCount();
        const QString name = QLatin1String(row.name);
        QPushButton* font = button(tr("Change font"), name + QStringLiteral("Font"));
        QPushButton* color = button(tr("Change colour"), name + QStringLiteral("Colour"));
        grid->addWidget(new QLabel(tr(row.label)), at, 0);
        grid->addWidget(font, at, 1);
        grid->addWidget(color, at, 2);
        connect(font, &QPushButton::clicked, this, row.font);
        connect(color, &QPushButton::clicked, this, row.color);
    }
    const int allRow = grid->rowCount();
    QPushButton* allFont = button(tr("Change font"), QStringLiteral("allFont"));
    grid->addWidget(new QLabel(tr("All text")), allRow, 0);
    grid->addWidget(allFont, allRow, 1);

    QPushButton* defaults = button(tr("Defaults..."), QStringLiteral("defaults"));
    QPushButton* close = button(tr("Close"), QStringLiteral("close"));
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(defaults);
    bottom->addStretch();
    bottom->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(sampler_, 1);
    layout->addLayout(grid);
    layout->addLayout(bottom);

    connect(allFont, &QPushButton::clicked, this, qOverload<>(&QcbsStylesDialog::setFont));
    connect(defaults, &QPushButton::clicked, this, &QcbsStylesDialog::setFontAll);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
}

QString QcbsStylesDialog::sampleText()
{
    return QStringLiteral("# Current styles\ndata_block\n_core_item_a 'a string'\n_core_item_b value~sub~\n"
                          "_custom_item_c \\a\\b\\%A\nloop_\n_core_item_loop1\n_custom_item_loop2\n;\n"
                          "text block\n;\n");
}

void QcbsStylesDialog::setFontNormal()
{
    setFont(QStringLiteral("Standard"));
}
void QcbsStylesDialog::setColorNormal()
{
    setColor(QStringLiteral("Standard"));
}
void QcbsStylesDialog::setFontComment()
{
    setFont(QStringLiteral("Comment"));
}
void QcbsStylesDialog::setColorComment()
{
    setColor(QStringLiteral("Comment"));
}
void QcbsStylesDialog::setFontBlocks()
{
    setFont(QStringLiteral("Type"));
}
void QcbsStylesDialog::setColorBlocks()
{
    setColor(QStringLiteral("Type"));
}
void QcbsStylesDialog::setFontDataItems()
{
    setFont(QStringLiteral("CoreDataItem"));
}
void QcbsStylesDialog::setColorDataItems()
{
    setColor(QStringLiteral("CoreDataItem"));
}
void QcbsStylesDialog::setFontCustomDataItems()
{
    setFont(QStringLiteral("CustomDataItem"));
}
void QcbsStylesDialog::setColorCustomDataItems()
{
    setColor(QStringLiteral("CustomDataItem"));
}
void QcbsStylesDialog::setFontKeywords()
{
    setFont(QStringLiteral("Keyword"));
}
void QcbsStylesDialog::setColorKeywords()
{
    setColor(QStringLiteral("Keyword"));
}
void QcbsStylesDialog::setFontTextBlocks()
{
    setFont(QStringLiteral("String"));
}
void QcbsStylesDialog::setColorTextBlocks()
{
    setColor(QStringLiteral("String"));
}
void QcbsStylesDialog::setFontSpecialChars()
{
    setFont(QStringLiteral("SpecialCharNormal"));
}
void QcbsStylesDialog::setColorSpecialChars()
{
    setColor(QStringLiteral("SpecialCharNormal"));
}
void QcbsStylesDialog::setFontSpecialCharSymbol()
{
    setFont(symbolStyle);
}
void QcbsStylesDialog::setColorSpecialCharSymbol()
{
    setColor(symbolStyle);
}
void QcbsStylesDialog::setFontSMarkers()
{
    setFont(QStringLiteral("SMarker"));
}
void QcbsStylesDialog::setColorSMarkers()
{
    setColor(QStringLiteral("SMarker"));
}

// Raised and lowered text are one kind of text to the user.
void QcbsStylesDialog::setFontSupSub()
{
    changeFont({QStringLiteral("Superscript"), QStringLiteral("Subscript")});
}

void QcbsStylesDialog::setColorSupSub()
{
    changeColor({QStringLiteral("Superscript"), QStringLiteral("Subscript")});
}

void QcbsStylesDialog::setFont(const QString& name)
{
    changeFont({name});
}

void QcbsStylesDialog::setColor(const QString& name)
{
    changeColor({name});
}

void QcbsStylesDialog::changeFont(const QStringList& names)
{
    QFont font = readStyleFont(names.first());
    if (!chooseFont(font))
        return;
    for (const QString& name : names)
        saveStyleFont(font, name);
}

void QcbsStylesDialog::changeColor(const QStringList& names)
{
    QColor color = readStyleColor(names.first());
    if (!chooseColor(color))
        return;
    for (const QString& name : names)
        saveStyleColor(color, name);
}

void QcbsStylesDialog::setFont()
{
    QFont chosen = readStyleFont(QStringLiteral("Standard"));
    if (!chooseFont(chosen))
        return;
    const QcbsStyles styles = QcbsStyleStore::read(0);
    for (auto style = styles.begin(); style != styles.end(); ++style) {
        QFont font = style->font;
        // The Greek letters need their own font whatever the text around them uses.
        if (style.key() != symbolStyle)
            font.setFamily(chosen.family());
        font.setPointSize(chosen.pointSize());
        QcbsStyleStore::writeFont(style.key(), font);
    }
    emit userChangedStyle();
    refreshSampler();
}

void QcbsStylesDialog::setFontAll()
{
    const FontBase base = chooseFontBase();
    if (base == NoBase)
        return;
    QcbsStyleStore::write(QcbsStyleStore::shipped(base == FixedWidth ? QcbsStyleStore::fixedWidthBase()
                                                                     : QcbsStyleStore::variableWidthBase()));
    emit userChangedStyle();
    refreshSampler();
}

void QcbsStylesDialog::refreshSampler()
{
    sampler_->processStyles();
}

// The sizes as stored, without the zoom of the editors, so that saving a style back does not
// add the zoom twice.
QFont QcbsStylesDialog::readStyleFont(const QString& name) const
{
    return QcbsStyleStore::read(0).value(name).font;
}

QColor QcbsStylesDialog::readStyleColor(const QString& name) const
{
    return QcbsStyleStore::read(0).value(name).color;
}

void QcbsStylesDialog::saveStyleFont(const QFont& font, const QString& name)
{
    QcbsStyleStore::writeFont(name, font);
    emit userChangedStyle();
    refreshSampler();
}

void QcbsStylesDialog::saveStyleColor(const QColor& color, const QString& name)
{
    QcbsStyleStore::writeColor(name, color);
    emit userChangedStyle();
    refreshSampler();
}

bool QcbsStylesDialog::chooseFont(QFont& font)
{
    bool ok = false;
    const QFont chosen = QFontDialog::getFont(&ok, font, this);
    if (ok)
        font = chosen;
    return ok;
}

bool QcbsStylesDialog::chooseColor(QColor& color)
{
    const QColor chosen = QColorDialog::getColor(color, this);
    if (chosen.isValid())
        color = chosen;
    return chosen.isValid();
}

QcbsStylesDialog::FontBase QcbsStylesDialog::chooseFontBase()
{
    QMessageBox question(QMessageBox::Question, QString::fromStdString(programName()),
                         tr("Choose font style:"), QMessageBox::NoButton, this);
    QAbstractButton* fixed = question.addButton(tr(" Fixed width"), QMessageBox::AcceptRole);
    QAbstractButton* variable = question.addButton(tr(" Variable width"), QMessageBox::AcceptRole);
    QAbstractButton* cancel = question.addButton(tr("Cancel"), QMessageBox::RejectRole);
    question.setEscapeButton(cancel);
    question.exec();
    if (question.clickedButton() == fixed)
        return FixedWidth;
    if (question.clickedButton() == variable)
        return VariableWidth;
    return NoBase;
}
