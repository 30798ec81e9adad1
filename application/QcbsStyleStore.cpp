#include "QcbsStyleStore.h"

#include "QcbsPreferences.h"

#include <QApplication>
#include <QSettings>

namespace {

QString styleKey(const QString& name, const char* suffix)
{
    return QStringLiteral("/Cifward/styles/") + name + QLatin1Char('/') + QLatin1String(suffix);
}

QSettings openStore()
{
    return QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
}

// Each stored value replaces the one in `style` only when it can be read as its type.
void readStored(const QSettings& settings, const QString& name, QcbsStyle& style)
{
    const QString family = QcbsPreferences::stringValue(settings, styleKey(name, "family"));
    if (!family.trimmed().isEmpty())
        style.font.setFamily(family);
    style.font.setPointSize(QcbsPreferences::intValue(
        settings, styleKey(name, "size"), style.font.pointSize(), 1, QcbsStyleStore::maxPointSize));
    style.font.setBold(QcbsPreferences::boolValue(settings, styleKey(name, "bold"), style.font.bold()));
    style.font.setItalic(QcbsPreferences::boolValue(settings, styleKey(name, "italic"), style.font.italic()));
    style.font.setUnderline(
        QcbsPreferences::boolValue(settings, styleKey(name, "underline"), style.font.underline()));
    style.color =
        QColor(QcbsPreferences::intValue(settings, styleKey(name, "red"), style.color.red(), 0, 255),
               QcbsPreferences::intValue(settings, styleKey(name, "green"), style.color.green(), 0, 255),
               QcbsPreferences::intValue(settings, styleKey(name, "blue"), style.color.blue(), 0, 255));
}

void writeFontKeys(QSettings& settings, const QString& name, const QFont& font)
{
    settings.setValue(styleKey(name, "family"), font.family());
    settings.setValue(styleKey(name, "size"), font.pointSize());
    settings.setValue(styleKey(name, "bold"), font.bold());
    settings.setValue(styleKey(name, "italic"), font.italic());
    settings.setValue(styleKey(name, "underline"), font.underline());
}

void writeColorKeys(QSettings& settings, const QString& name, const QColor& color)
{
    settings.setValue(styleKey(name, "red"), color.red());
    settings.setValue(styleKey(name, "green"), color.green());
    settings.setValue(styleKey(name, "blue"), color.blue());
}

} // namespace

const QStringList& QcbsStyleStore::styleNames()
{
    static const QStringList names = {
        QStringLiteral("Standard"),
        QStringLiteral("Comment"),
        QStringLiteral("Number"),
        QStringLiteral("String"),
        QStringLiteral("Type"),
        QStringLiteral("Keyword"),
        QStringLiteral("CoreDataItem"),
        QStringLiteral("CustomDataItem"),
        QStringLiteral("SpecialCharSymbol"),
        QStringLiteral("SpecialCharNormal"),
        QStringLiteral("Superscript"),
        QStringLiteral("Subscript"),
        QStringLiteral("SMarker"),
    };
    return names;
}

QFont QcbsStyleStore::fixedWidthBase()
{
    return QFont(QStringLiteral("Courier"), 12, QFont::Normal);
}

QFont QcbsStyleStore::variableWidthBase()
{
    return QApplication::font();
}

QcbsStyles QcbsStyleStore::shipped(const QFont& base)
{
    struct Shipped {
        const char* name;
        bool bold;
        bool italic;
        const char* family; // null: the base's
        QColor color;
    };
    const Shipped table[] = {
        {"Standard", false, false, nullptr, Qt::black},
        {"Comment", false, true, nullptr, Qt::darkGreen},
        {"Number", false, false, nullptr, Qt::black},
        {"String", true, false, nullptr, QColor(0, 85, 0)},
        {"Type", true, false, nullptr, Qt::red},
        {"Keyword", true, false, nullptr, Qt::magenta},
        {"CoreDataItem", true, false, nullptr, Qt::blue},
        {"CustomDataItem", true, false, nullptr, Qt::darkBlue},
        {"SpecialCharSymbol", true, false, "Symbol", Qt::darkYellow},
        {"SpecialCharNormal", true, false, nullptr, Qt::darkYellow},
        {"Superscript", false, false, nullptr, Qt::blue},
        {"Subscript", false, false, nullptr, Qt::blue},
        {"SMarker", true, false, nullptr, Qt::lightGray},
    };
    // An application font given in pixels has no point size.
    const int size = base.pointSize() > 0 ? base.pointSize() : fixedWidthBase().pointSize();
    QcbsStyles styles;
    for (const Shipped& row : table) {
        QFont font(row.family ? QString::fromLatin1(row.family) : base.family(), size);
        font.setWeight(row.bold ? QFont::Bold : QFont::Normal);
        font.setItalic(row.italic);
        styles.insert(QString::fromLatin1(row.name), QcbsStyle{font, row.color});
    }
    return styles;
}

QcbsStyles QcbsStyleStore::read()
{
    const int maxChange = QcbsPreferences::maxFontChange;
    return read(QcbsPreferences::intValue(openStore(), QcbsPreferences::key("font changesize"), 0, -maxChange,
                                          maxChange));
}

QcbsStyles QcbsStyleStore::read(int sizeChange)
{
    QcbsStyles styles = shipped(fixedWidthBase());
    bool stored = false;
    {
        const QSettings settings = openStore();
        stored = !QcbsPreferences::stringValue(settings, styleKey(QStringLiteral("Standard"), "family"))
                      .trimmed()
                      .isEmpty();
        if (stored)
            for (auto style = styles.begin(); style != styles.end(); ++style)
                readStored(settings, style.key(), style.value());
    }
    if (!stored)
        write(styles);
    for (QcbsStyle& style : styles)
        style.font.setPointSize(qBound(1, style.font.pointSize() + sizeChange, maxPointSize));
    return styles;
}

void QcbsStyleStore::write(const QcbsStyles& styles)
{
    QSettings settings = openStore();
    for (auto style = styles.begin(); style != styles.end(); ++style) {
        writeFontKeys(settings, style.key(), style->font);
        writeColorKeys(settings, style.key(), style->color);
    }
}

void QcbsStyleStore::writeFont(const QString& name, const QFont& font)
{
    QSettings settings = openStore();
    writeFontKeys(settings, name, font);
}

void QcbsStyleStore::writeColor(const QString& name, const QColor& color)
{
    QSettings settings = openStore();
    writeColorKeys(settings, name, color);
}
