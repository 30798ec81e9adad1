#include "QcbsSyntaxHighlighter_CIF.h"

#include <QGuiApplication>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace {

// Character classes. 1, 2 and 4 are never produced; their columns exist to keep the table whole.
enum CharClass {
    Word = 0,
    Hash = 3,
    Blank = 5,
    Underscore = 6,
    Quote = 7,
    Semicolon = 8,
    Other = 9,
};

enum State {
    Normal = 0,
    CommentOpened = 1,
    CommentSecond = 3,
    InComment = 5,
    QuoteOpened = 8,
    InQuote = 9,
    TextBlockOpened = 11,
    InTextBlock = 12,
    UnreachableNumber = 14,
    InDataName = 15,
};

constexpr int kClasses = 10;
// clang-format off
constexpr unsigned char kTransitions[16][kClasses] = {
    //  0   1   2   3   4   5   6   7   8   9
    {   0,  0,  0,  1,  0,  0, 15,  8, 11,  0 },  //  0 normal
    {   3,  3,  3,  3,  3,  3,  3,  3,  3,  3 },  //  1 comment opened
    {   4,  4,  4,  4,  4,  4,  4,  4,  4,  4 },  //  2 reserved comment form
    {   5,  5,  5,  5,  5,  5,  5,  5,  5,  5 },  //  3 comment, second character
    {   4,  4,  4,  4,  4,  4,  4,  4,  4,  4 },  //  4 reserved comment form
    {   5,  5,  5,  5,  5,  5,  5,  5,  5,  5 },  //  5 in comment
    {   4,  4,  4,  7,  4,  4,  4,  4,  4,  4 },  //  6 reserved comment form
    {   0,  0,  0,  1,  0,  0, 15,  8, 11,  0 },  //  7 reserved comment end
    {   9,  9,  9,  9,  9,  9,  9, 10,  9,  9 },  //  8 quote opened
    {   9,  9,  9,  9,  9,  9,  9, 10,  9,  9 },  //  9 in quoted string
    {   0,  0,  0,  1,  0,  0, 15,  8, 11,  0 },  // 10 quote closed
    {  12, 12, 12, 12, 12, 12, 12, 12, 13, 12 },  // 11 text block opened
    {  12, 12, 12, 12, 12, 12, 12, 12, 13, 12 },  // 12 in text block
    {   0,  0,  0,  1,  0,  0, 15,  8, 11,  0 },  // 13 text block closed
    {  14, 14, 14,  1, 14,  0, 15,  8, 11,  0 },  // 14 number, unreachable
    {  15, 15, 15, 15, 15,  0, 15,  8, 11,  0 },  // 15 in data name
};
// clang-format on

constexpr int kSuperscriptOpen = 1 << 8;
constexpr int kSubscriptOpen = 1 << 9;

bool isLetterOrDigit(QChar c)
{
    return c.isLetterOrNumber();
}

bool isWordPunctuation(QChar c)
{
    switch (c.unicode()) {
    case '!':
    case '$':
    case '%':
    case '&':
    case '(':
    case ')':
    case '*':
    case '+':
    case ',':
    case '-':
    case '.':
    case '/':
    case ':':
    case '<':
    case '>':
    case '?':
    case '@':
    case '[':
    case '\\':
    case ']':
    case '^':
    case '`':
    case '{':
    case '|':
    case '}':
    case '~':
        return true;
    default:
        return c.isDigit() && c.unicode() < 128;
    }
}

// A quote between two word characters is an apostrophe ("don't"), not a delimiter.
bool isApostrophe(QChar prev, QChar next)
{
    const bool before = isLetterOrDigit(prev) || prev == u'(' || prev == u')' || prev == u'\\';
    const bool after = isLetterOrDigit(next) || next == u'(' || next == u')';
    return before && after;
}

int classify(QChar c, QChar prev, QChar next, bool lineStart, bool& semicolonAtStart)
{
    switch (c.unicode()) {
    case '\t':
    case ' ':
        return Blank;
    case '#':
        return lineStart || prev.isSpace() ? Hash : Word;
    case '_':
        return lineStart || prev.isSpace() ? Underscore : Word;
    case ';':
        semicolonAtStart = lineStart;
        return lineStart ? Semicolon : Blank;
    case '\'':
    case '"':
        return isApostrophe(prev, next) ? Word : Quote;
    default:
        if (c.unicode() < 256 && isWordPunctuation(c))
            return Word;
        return c.isLetter() ? Word : Other;
    }
}

bool isAccentMark(QChar c)
{
    switch (c.unicode()) {
    case '\'':
    case '`':
    case '^':
    case ',':
    case '"':
    case '~':
    case ';':
    case '>':
    case '=':
    case '.':
    case '<':
    case '(':
        return true;
    default:
        return false;
    }
}

bool isSymbolMark(QChar c)
{
    return c == u'%' || c == u'?' || c == u'&' || c == u'/';
}

} // namespace

QcbsSyntaxHighlighter_CIF::QcbsSyntaxHighlighter_CIF(QTextDocument* document) : QSyntaxHighlighter(document)
{
    QFont base = QGuiApplication::font();
    if (base.pointSize() <= 0)
        base.setPointSize(10);
    for (int id = 0; id < FormatCount; ++id) {
        QFont font = base;
        if (id == SpecialCharSymbol)
            font.setFamily(QStringLiteral("Symbol"));
        setFormatId(id, font, Qt::black);
    }
}

void QcbsSyntaxHighlighter_CIF::setFormatId(int id, const QFont& font, const QColor& color)
{
    QTextCharFormat& format = formats_[id];
    format = QTextCharFormat();
    format.setFont(font);
    format.setProperty(FormatIdProperty, id);
    if (id == SpecialCharSymbol) {
        // The escape's Latin letter stays in the text; the editor paints the Greek letter over
        // its place, so the letter itself must not show.
        format.setForeground(Qt::transparent);
        format.setProperty(SymbolColorProperty, color);
    } else {
        format.setForeground(color);
    }
}

QTextCharFormat QcbsSyntaxHighlighter_CIF::styleFormat(int id) const
{
    return id >= 0 && id < FormatCount ? formats_[id] : formats_[Standard];
}

int QcbsSyntaxHighlighter_CIF::formatIdForStyle(const QString& name)
{
    const int id = QcbsStyleStore::styleNames().indexOf(name);
    return id < 0 ? Standard : id;
}

int QcbsSyntaxHighlighter_CIF::formatIdAt(const QTextBlock& block, int position)
{
    if (!block.isValid() || !block.layout())
        return -1;
    const QList<QTextLayout::FormatRange> ranges = block.layout()->formats();
    for (const QTextLayout::FormatRange& range : ranges)
        if (position >= range.start && position < range.start + range.length)
            return range.format.intProperty(FormatIdProperty);
    return -1;
}

void QcbsSyntaxHighlighter_CIF::applyStyles(const QcbsStyles& styles)
{
    const QStringList& names = QcbsStyleStore::styleNames();
    for (int id = 0; id < FormatCount; ++id) {
        const auto style = styles.constFind(names[id]);
        if (style != styles.constEnd())
            setFormatId(id, style->font, style->color);
    }
    // Raised and lowered text would break the columns of a fixed-width font while the markers
    // still take their places; with the markers hidden, or a proportional font, there are no
    // columns to keep.
    const auto align = [this](int id, QTextCharFormat::VerticalAlignment alignment) {
        if (formats_[id].font().family() != QLatin1String("Courier") || removeMarkers_)
            formats_[id].setVerticalAlignment(alignment);
    };
    align(Superscript, QTextCharFormat::AlignSuperScript);
    align(Subscript, QTextCharFormat::AlignSubScript);
    rehighlight();
}

void QcbsSyntaxHighlighter_CIF::setFont(int sizeDifference)
{
    for (QTextCharFormat& format : formats_) {
        QFont font = format.font();
        font.setPointSize(std::max(1, font.pointSize() + sizeDifference));
        format.setFont(font);
    }
    rehighlight();
}

void QcbsSyntaxHighlighter_CIF::setRemoveMarkers(bool remove)
{
    if (remove == removeMarkers_)
        return;
    removeMarkers_ = remove;
    rehighlight();
}

void QcbsSyntaxHighlighter_CIF::setDictionary(const HCifDictionaryPool& dictionary)
{
    dictionary_ = dictionary;
    rehighlight();
}

bool QcbsSyntaxHighlighter_CIF::isCoreName(QStringView word)
{
    // The sampler of the styles dialog shows a core name without any dictionary loaded.
    if (word.contains(QLatin1String("_core_item")))
        return true;
    if (!dictionary_)
        return false;
    // A name at the end of a sentence in a text is still the name.
    if (word.endsWith(u'.') || word.endsWith(u','))
        word.chop(1);
    // One buffer for every lookup: this runs for each data name of every line coloured.
    nameBuffer_.assign(static_cast<std::size_t>(word.size()), '\0');
    for (qsizetype i = 0; i < word.size(); ++i)
        nameBuffer_[static_cast<std::size_t>(i)] = word[i].toLatin1();
    return dictionary_->exists(nameBuffer_);
}

void QcbsSyntaxHighlighter_CIF::highlightBlock(const QString& text)
{
    const int previous = previousBlockState();
    int state = endState(previous);
    bool superscriptOpen = previous >= 0 && (previous & kSuperscriptOpen);
    bool subscriptOpen = previous >= 0 && (previous & kSubscriptOpen);

    // The walk goes one character past the end, a blank standing for the line end, so that a
    // word at the end of the line is closed like any other.
    const int n = text.size();
    const auto at = [&](int i) { return i >= 0 && i < n ? text[i] : (i == n ? QChar(u' ') : QChar()); };
    // The format id of each character, kept between lines so that colouring a line allocates
    // nothing.
    std::vector<unsigned char>& ids = ids_;
    ids.assign(static_cast<std::size_t>(n) + 1, Standard);
    bool lineStart = true;
    bool hashPending = false;
    int wordStart = 0;
    int wordLength = 0;

    for (int i = 0; i <= n; ++i) {
        const QChar c = at(i);
        const QChar prev = at(i - 1);
        bool semicolonAtStart = false;
        const int cls = classify(c, prev, at(i + 1), lineStart, semicolonAtStart);
        if (semicolonAtStart)
            superscriptOpen = subscriptOpen = false;
        if (cls == Word || cls == Underscore) {
            if (wordLength == 0)
                wordStart = i;
            ++wordLength;
        }
        if (!c.isSpace())
            lineStart = false;

        const int old = state;
        state = kTransitions[state][cls];
        if (state == QuoteOpened && isLetterOrDigit(prev))
            state = Normal;

        if (old == InDataName && state != InDataName && wordLength > 0 && cls != Word) {
            if (isCoreName(QStringView(text).mid(wordStart, wordLength)))
                std::fill_n(ids.begin() + wordStart, wordLength, CoreDataItem);
            wordLength = 0;
        }

        const bool commentAction = state >= 2 && state <= 7;
        if (hashPending && !commentAction && state != CommentOpened) {
            ids[i - 1] = Standard;
            hashPending = false;
        }
        switch (state) {
        case Normal:
            ids[i] = Standard;
            if (wordLength > 0 && cls != Word) {
                const QStringView word =
                    QStringView(text).mid(wordStart, std::min(wordLength, n - wordStart));
                if (word.size() >= 5 && word.startsWith(QLatin1String("data_")))
                    std::fill_n(ids.begin() + wordStart, wordLength, Type);
                else if (word == QLatin1String("loop_"))
                    std::fill_n(ids.begin() + wordStart, wordLength, Keyword);
                wordLength = 0;
            }
            break;
        case CommentOpened:
            hashPending = true;
            break;
        case 2:
        case CommentSecond:
            ids[i - 1] = Comment;
            ids[i] = Comment;
            hashPending = false;
            wordLength = 0;
            break;
        case 4:
        case InComment:
        case 6:
        case 7:
            ids[i] = Comment;
            wordLength = 0;
            break;
        case InTextBlock:
            ids[i] = String;
            wordLength = 0;
            break;
        case UnreachableNumber:
            ids[i] = Number;
            wordLength = 0;
            break;
        case InDataName:
            ids[i] = CustomDataItem;
            break;
        default: // quotes and the text block delimiters
            ids[i] = Standard;
            wordLength = 0;
            break;
        }

        if (ids[i] != Comment) {
            const QChar prev2 = at(i - 2);
            if (prev == u'\\' && c != u'\\' && prev2 != u'\\') {
                ids[i] = c.isLetter() ? SpecialCharSymbol : SpecialCharNormal;
                ids[i - 1] = SpecialCharNormal;
            } else if (prev2 == u'\\' && isSymbolMark(prev) && c.isLetter()) {
                std::fill_n(ids.begin() + i - 2, 3, SpecialCharNormal);
            }
            if (prev2 == u'\\' && isAccentMark(prev) && c.isLetter())
                std::fill_n(ids.begin() + i - 2, 3, SpecialCharNormal);
        }
    }

    if (superscriptOpen || subscriptOpen || text.contains(u'^') || text.contains(u'~')) {
        bool escaped = false;
        for (int i = 0; i < n; ++i) {
            const QChar c = text[i];
            if (superscriptOpen && c != u'^')
                ids[i] = Superscript;
            if (subscriptOpen && c != u'~')
                ids[i] = Subscript;
            if (!escaped && (c == u'^' || c == u'~')) {
                ids[i] = SMarker;
                bool& same = c == u'^' ? superscriptOpen : subscriptOpen;
                bool& other = c == u'^' ? subscriptOpen : superscriptOpen;
                if (same) {
                    same = false;
                } else {
                    other = false;
                    same = true;
                }
            }
            escaped = c == u'\\';
        }
    }

    const bool runsOn = state == 4 || state == 6 || state == InQuote || state == InTextBlock;
    int blockState = runsOn ? state : 0;
    if (state == InTextBlock)
        blockState |= (superscriptOpen ? kSuperscriptOpen : 0) | (subscriptOpen ? kSubscriptOpen : 0);
    setCurrentBlockState(blockState);
    applyFormats(text, ids);
}

void QcbsSyntaxHighlighter_CIF::applyFormats(const QString& text, const std::vector<unsigned char>& ids)
{
    const int n = text.size();
    // Hidden markers keep their characters (the text is the file) but take no room on screen:
    // the super- and subscript markers inside the line, and the backslash of each escape.
    const auto hidden = [&](int i) {
        if (!removeMarkers_)
            return false;
        if (ids[i] == SMarker)
            return i > 0 && i < n - 1;
        return ids[i] == SpecialCharNormal && text[i] == u'\\';
    };
    int start = 0;
    while (start < n) {
        const bool hide = hidden(start);
        int end = start + 1;
        while (end < n && ids[end] == ids[start] && hidden(end) == hide)
            ++end;
        if (hide) {
            QTextCharFormat format = formats_[ids[start]];
            QFont tiny = format.font();
            tiny.setPixelSize(1);
            format.setFont(tiny);
            format.setForeground(Qt::transparent);
            format.setProperty(HiddenProperty, true);
            setFormat(start, end - start, format);
        } else {
            setFormat(start, end - start, formats_[ids[start]]);
        }
        start = end;
    }
}
