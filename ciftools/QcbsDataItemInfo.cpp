#include "QcbsDataItemInfo.h"

#include "QcbsSyntaxHighlighter_CIF.h"

#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QShortcut>
#include <QTextBlock>
#include <QTextCursor>
#include <algorithm>

namespace {

// The heading colours, X11's gray40 on gray85.
const QColor headingText(0x66, 0x66, 0x66);
const QColor headingBack(0xd9, 0xd9, 0xd9);

QString fromStd(const std::string& text)
{
    return QString::fromStdString(text);
}

// The text of `folder`/`name`.txt in the first directory that holds it; names are tried as given
// and in lower case, since a data name is the same name in any case.
QString readExtra(const QStringList& directories, const QString& folder, const QString& name)
{
    for (const QString& directory : directories)
        for (const QString& file : {name, name.toLower()}) {
            QFile extra(directory + QLatin1Char('/') + folder + QLatin1Char('/') + file +
                        QStringLiteral(".txt"));
            if (extra.open(QIODevice::ReadOnly | QIODevice::Text))
                return QString::fromUtf8(extra.readAll());
        }
    return {};
}

QString rangeInWords(const QString& range)
{
    const int colon = range.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return range;
    const QString low = range.left(colon).trimmed();
    const QString high = range.mid(colon + 1).trimmed();
    if (high.isEmpty())
        return QStringLiteral("lower limit of ") + low;
    if (low.isEmpty())
        return QStringLiteral("upper limit of ") + high;
    return low + QStringLiteral(" to ") + high;
}

// Writes the help into the document: plain text in the editor's font, and headings in bold grey
// on a grey band, so that the plain text of the page reads the same as a text form of it.
class HelpWriter {
public:
    explicit HelpWriter(QTextDocument* document) : cursor_(document) {}

    void plain(const QString& text)
    {
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0)
                cursor_.insertBlock(QTextBlockFormat(), QTextCharFormat());
            cursor_.insertText(lines[i], QTextCharFormat());
        }
    }
    void styled(const QString& text, const QTextCharFormat& format) { cursor_.insertText(text, format); }
    // `before` ends with a line end, so the heading has its own line.
    void heading(const QString& before, const QString& title, const QString& after)
    {
        plain(before);
        QTextBlockFormat band;
        band.setBackground(headingBack);
        cursor_.setBlockFormat(band);
        QTextCharFormat format;
        format.setFontWeight(QFont::Bold);
        format.setForeground(headingText);
        cursor_.insertText(title, format);
        plain(after);
    }

private:
    QTextCursor cursor_;
};

} // namespace

QcbsDataItemInfo::QcbsDataItemInfo(const QString& name, const HCifDictionary& dictionary,
                                   const QString& helpDirectory, QWidget* parent)
    : QcbsRichTextEdit(parent), dictionary_(dictionary), name_(name)
{
    setObjectName(QStringLiteral("item help"));
    setWindowFlag(Qt::Window);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Data item help: ") + name);
    // Prose, not CIF: the CIF colours would take an apostrophe in a definition for a quote.
    highlighter()->setDocument(nullptr);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setWordWrapMode(QTextOption::WordWrap);
    compose(helpDirectory);
    setReadOnlyMenu(true);
    moveCursor(QTextCursor::Start);
    resize(640, 460);

    auto* close = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
}

QStringList QcbsDataItemInfo::extraDirectories(const QString& helpDirectory)
{
    QStringList directories;
    const QString prefs = qEnvironmentVariable("CIFWARDPREFS");
    if (!prefs.isEmpty())
        directories << prefs;
    if (!helpDirectory.isEmpty())
        directories << helpDirectory;
    return directories;
}

void QcbsDataItemInfo::compose(const QString& helpDirectory)
{
    HelpWriter out(document());
    QTextCharFormat title;
    title.setFontWeight(QFont::Bold);
    title.setFontPointSize(font().pointSizeF() + 2);
    out.styled(name_, title);

    const std::string key = name_.toStdString();
    const CifDictionaryEntry* entry = dictionary_ ? dictionary_->find_entry(key) : nullptr;
    out.heading(QStringLiteral("\n"), QStringLiteral("Definition:"), QStringLiteral("\n\n"));
    out.plain(entry ? fromStd(entry->definition) : QStringLiteral("(not in dictionary)\n"));

    const QStringList directories = extraDirectories(helpDirectory);
    QList<QPair<QString, QString>> values;
    if (entry)
        for (const auto& [value, detail] : entry->enumeration)
            values.append({fromStd(value), fromStd(detail)});
    for (const QString& line : readExtra(directories, QStringLiteral("choices_extra"), name_)
                                   .split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        if (!line.trimmed().isEmpty())
            values.append({line.trimmed(), QString()});
    if (!values.isEmpty()) {
        qsizetype width = 0;
        for (const auto& value : values)
            width = std::max(width, value.first.size());
        QStringList lines;
        for (const auto& [value, detail] : values)
            lines << (detail.isEmpty() ? value : value.leftJustified(width + 3) + detail.simplified());
        out.heading(QStringLiteral("\n\n"), QStringLiteral("Recommended values:"), QStringLiteral("\n\n"));
        out.plain(lines.join(QLatin1Char('\n')));
    }

    if (entry && !entry->enumeration_range.empty()) {
        out.heading(QStringLiteral("\n\n"), QStringLiteral("Recommended range of values:"),
                    QStringLiteral("\n\n"));
        out.plain(rangeInWords(fromStd(entry->enumeration_range)));
    }

    const QString info = readExtra(directories, QStringLiteral("info_extra"), name_);
    if (!info.isEmpty()) {
        out.heading(QStringLiteral("\n"), QStringLiteral("Extra info for this item:"),
                    QStringLiteral("\n\n"));
        out.plain(info);
    }

    if (entry)
        for (std::size_t i = 0; i < entry->example.size(); ++i) {
            const auto& [example, detail] = entry->example[i];
            out.heading(QStringLiteral("\n\n"), QStringLiteral("Example %1:").arg(i + 1),
                        QStringLiteral("\n\n"));
            out.plain(fromStd(example));
            if (!detail.empty())
                out.plain(QLatin1Char('\n') + fromStd(detail));
        }
    out.plain(QStringLiteral("\n"));
}

void QcbsDataItemInfo::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    QAction* copyAction = menu.addAction(QStringLiteral("Copy"), this, &QcbsRichTextEdit::copy);
    copyAction->setEnabled(textCursor().hasSelection());
    menu.addAction(QStringLiteral("Select All"), this, &QPlainTextEdit::selectAll);
    menu.addAction(QStringLiteral("Close"), this, &QWidget::close);
    menu.exec(event->globalPos());
}
