#ifndef CIFWARD_QCBSSYNTAXHIGHLIGHTER_CIF_H
#define CIFWARD_QCBSSYNTAXHIGHLIGHTER_CIF_H

#include "CifDictionaryPool.h"
#include "QcbsStyleStore.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <array>
#include <string>
#include <vector>

class QTextBlock;

// Colours CIF text line by line from the line's own characters and the state the line before
// ended in, without parsing: a table automaton of 16 states by 10 character classes. It also
// gives the text escapes their look (Greek letters, escape codes, super- and subscripts) and asks
// a dictionary whether a data name is a core one.
//
// Each line's state is its end state in the low byte (0, or 4, 6, 9, 12 for a construct that runs
// on) and the super- and subscript markers left open inside a text block in the next two bits, so
// that any line can be coloured again on its own and a keystroke re-colours only up to the line
// where the state settles.
class QcbsSyntaxHighlighter_CIF : public QSyntaxHighlighter {
    Q_OBJECT
public:
    enum FormatId {
        Standard,
        Comment,
        Number,
        String,
        Type,
        Keyword,
        CoreDataItem,
        CustomDataItem,
        SpecialCharSymbol,
        SpecialCharNormal,
        Superscript,
        Subscript,
        SMarker,
        FormatCount
    };
    // Every format carries its id here, so that the editor can find the characters of a format
    // (the Greek letters it paints, the escapes its clipboard restores) in a line's layout.
    static constexpr int FormatIdProperty = QTextFormat::UserProperty + 1;
    // A Greek letter's format draws nothing itself; the colour the editor paints it in is here.
    static constexpr int SymbolColorProperty = QTextFormat::UserProperty + 2;
    // Markers hidden on screen are drawn as nothing, but stay in the text.
    static constexpr int HiddenProperty = QTextFormat::UserProperty + 3;

    explicit QcbsSyntaxHighlighter_CIF(QTextDocument* document);

    // The format of an id, format 0 for an id out of range.
    QTextCharFormat styleFormat(int id) const;
    // The id of a style name; a name that is none of the thirteen counts as "Standard".
    static int formatIdForStyle(const QString& name);
    // The format id the highlighter gave the character at `position` of `block`, or -1.
    static int formatIdAt(const QTextBlock& block, int position);

    void applyStyles(const QcbsStyles& styles);
    void setFont(int sizeDifference);
    void setRemoveMarkers(bool remove);
    bool removeMarkers() const { return removeMarkers_; }
    // The dictionary that decides which data names are core ones; null makes every name custom.
    void setDictionary(const HCifDictionaryPool& dictionary);

    // The end state within a line's state.
    static int endState(int blockState) { return blockState < 0 ? 0 : blockState & 0xff; }

protected:
    void highlightBlock(const QString& text) override;

private:
    void setFormatId(int id, const QFont& font, const QColor& color);
    void applyFormats(const QString& text, const std::vector<unsigned char>& ids);
    bool isCoreName(QStringView word);

    std::array<QTextCharFormat, FormatCount> formats_;
    bool removeMarkers_ = false;
    HCifDictionaryPool dictionary_;
    std::vector<unsigned char> ids_;
    std::string nameBuffer_;
};

#endif
