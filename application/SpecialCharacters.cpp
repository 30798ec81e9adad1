#include "SpecialCharacters.h"

#include <QHash>
#include <algorithm>
#include <iterator>

namespace {

// The texts are raw literals so that each reads as it will stand in the CIF. A few rows share a
// text on purpose, because the escapes cannot tell those letters apart: D0, 110 and 189 are all
// \/D, and 164 writes \<t just as 165 does.
// clang-format off
constexpr SpecialCharacter kRows[] = {
    // A CIF holds printable ASCII, tabs and line breaks; the other controls are dropped.
    {0x1, ""}, {0x2, ""}, {0x3, ""}, {0x4, ""}, {0x5, ""}, {0x6, ""}, {0x7, ""}, {0x8, ""}, {0xB, ""},
    {0xC, ""}, {0xE, ""}, {0xF, ""}, {0x10, ""}, {0x11, ""}, {0x12, ""}, {0x13, ""}, {0x14, ""}, {0x15, ""},
    {0x16, ""}, {0x17, ""}, {0x18, ""}, {0x19, ""}, {0x1A, ""}, {0x1B, ""}, {0x1C, ""}, {0x1D, ""},
    {0x1E, ""}, {0x1F, ""},
    // The C1 controls, which mostly arrive from text that was decoded with the wrong code page.
    {0x80, ""}, {0x81, ""}, {0x82, ""}, {0x83, ""}, {0x84, ""}, {0x85, ""}, {0x86, ""}, {0x87, ""},
    {0x88, ""}, {0x89, ""}, {0x8A, ""}, {0x8B, ""}, {0x8C, ""}, {0x8D, ""}, {0x8E, ""}, {0x8F, ""},
    {0x90, ""}, {0x91, ""}, {0x92, ""}, {0x93, ""}, {0x94, ""}, {0x95, ""}, {0x96, ""}, {0x97, ""},
    {0x98, ""}, {0x99, ""}, {0x9A, ""}, {0x9B, ""}, {0x9C, ""}, {0x9D, ""}, {0x9E, ""}, {0x9F, ""},
    // Latin-1: an accented letter becomes a backslash, its mark and the bare letter.
    {0xA0, " "}, {0xA2, R"(\/c)"}, {0xA5, R"(\/Y)"}, {0xB0, R"(\%)"}, {0xB1, "+-"}, {0xB2, "^2^"},
    {0xB3, "^3^"}, {0xB4, "'"}, {0xB5, R"(\m)"}, {0xB9, "^1^"}, {0xBC, "1/4"}, {0xBD, "1/2"}, {0xBE, "3/4"},
    {0xC0, R"(\`A)"}, {0xC1, R"(\'A)"}, {0xC2, R"(\^A)"}, {0xC3, R"(\~A)"}, {0xC4, R"(\"A)"},
    {0xC5, R"(\%A)"}, {0xC6, "AE"}, {0xC7, R"(\,C)"}, {0xC8, R"(\`E)"}, {0xC9, R"(\'E)"}, {0xCA, R"(\^E)"},
    {0xCB, R"(\"E)"}, {0xCC, R"(\`I)"}, {0xCD, R"(\'I)"}, {0xCE, R"(\^I)"}, {0xCF, R"(\"I)"},
    {0xD0, R"(\/D)"}, {0xD1, R"(\~N)"}, {0xD2, R"(\`O)"}, {0xD3, R"(\'O)"}, {0xD4, R"(\^O)"},
    {0xD5, R"(\~O)"}, {0xD6, R"(\"O)"}, {0xD7, R"(\\times)"}, {0xD8, R"(\/O)"}, {0xD9, R"(\`U)"},
    {0xDA, R"(\'U)"}, {0xDB, R"(\^U)"}, {0xDC, R"(\"U)"}, {0xDD, R"(\'Y)"}, {0xDF, R"(\&s)"},
    {0xE0, R"(\`a)"}, {0xE1, R"(\'a)"}, {0xE2, R"(\^a)"}, {0xE3, R"(\~a)"}, {0xE4, R"(\"a)"},
    {0xE5, R"(\%a)"}, {0xE6, "ae"}, {0xE7, R"(\,c)"}, {0xE8, R"(\`e)"}, {0xE9, R"(\'e)"}, {0xEA, R"(\^e)"},
    {0xEB, R"(\"e)"}, {0xEC, R"(\`i)"}, {0xED, R"(\'i)"}, {0xEE, R"(\^i)"}, {0xEF, R"(\"i)"},
    {0xF0, R"(\/d)"}, {0xF1, R"(\~n)"}, {0xF2, R"(\`o)"}, {0xF3, R"(\'o)"}, {0xF4, R"(\^o)"},
    {0xF5, R"(\~o)"}, {0xF6, R"(\"o)"}, {0xF8, R"(\/o)"}, {0xF9, R"(\`u)"}, {0xFA, R"(\'u)"},
    {0xFB, R"(\^u)"}, {0xFC, R"(\"u)"}, {0xFD, R"(\'y)"}, {0xFF, R"(\"y)"},
    // Latin Extended-A.
    {0x100, R"(\=A)"}, {0x101, R"(\=a)"}, {0x102, R"(\(A)"}, {0x103, R"(\(a)"}, {0x104, R"(\;A)"},
    {0x105, R"(\;a)"}, {0x106, R"(\'C)"}, {0x107, R"(\'c)"}, {0x108, R"(\^C)"}, {0x109, R"(\^c)"},
    {0x10A, R"(\.C)"}, {0x10B, R"(\.c)"}, {0x10C, R"(\<C)"}, {0x10D, R"(\<c)"}, {0x10E, R"(\<D)"},
    {0x10F, R"(\<d)"}, {0x110, R"(\/D)"}, {0x111, R"(\/d)"}, {0x112, R"(\=E)"}, {0x113, R"(\=e)"},
    {0x114, R"(\(E)"}, {0x115, R"(\(e)"}, {0x116, R"(\.E)"}, {0x117, R"(\.e)"}, {0x118, R"(\;E)"},
    {0x119, R"(\;e)"}, {0x11A, R"(\<E)"}, {0x11B, R"(\<e)"}, {0x11C, R"(\^G)"}, {0x11D, R"(\^g)"},
    {0x11E, R"(\(G)"}, {0x11F, R"(\(g)"}, {0x120, R"(\.G)"}, {0x121, R"(\.g)"}, {0x122, R"(\,G)"},
    {0x123, R"(\,g)"}, {0x124, R"(\^H)"}, {0x125, R"(\^h)"}, {0x126, R"(\/H)"}, {0x127, R"(\/h)"},
    {0x128, R"(\~I)"}, {0x129, R"(\~i)"}, {0x12A, R"(\=I)"}, {0x12B, R"(\=i)"}, {0x12C, R"(\(I)"},
    {0x12D, R"(\(i)"}, {0x12E, R"(\;I)"}, {0x12F, R"(\;i)"}, {0x130, R"(\.I)"}, {0x131, R"(\?i)"},
    {0x132, "IJ"}, {0x133, "ij"}, {0x134, R"(\^J)"}, {0x135, R"(\^j)"}, {0x136, R"(\,K)"}, {0x137, R"(\,k)"},
    {0x138, R"(\k)"}, {0x139, R"(\'L)"}, {0x13A, R"(\'l)"}, {0x13B, R"(\,L)"}, {0x13C, R"(\,l)"},
    {0x13D, R"(\(L)"}, {0x13E, R"(\(l)"}, {0x141, R"(\/L)"}, {0x142, R"(\/l)"}, {0x143, R"(\'N)"},
    {0x144, R"(\'n)"}, {0x145, R"(\,N)"}, {0x146, R"(\,n)"}, {0x147, R"(\<N)"}, {0x148, R"(\<n)"},
    {0x149, "'n"}, {0x14C, R"(\=O)"}, {0x14D, R"(\=o)"}, {0x14E, R"(\(O)"}, {0x14F, R"(\(o)"},
    {0x150, R"(\>O)"}, {0x151, R"(\>o)"}, {0x152, "OE"}, {0x153, "oe"}, {0x154, R"(\'R)"}, {0x155, R"(\'r)"},
    {0x156, R"(\,R)"}, {0x157, R"(\,r)"}, {0x158, R"(\<R)"}, {0x159, R"(\<r)"}, {0x15A, R"(\'S)"},
    {0x15B, R"(\'s)"}, {0x15C, R"(\^S)"}, {0x15D, R"(\^s)"}, {0x15E, R"(\,S)"}, {0x15F, R"(\,s)"},
    {0x160, R"(\<S)"}, {0x161, R"(\<s)"}, {0x162, R"(\,T)"}, {0x163, R"(\,t)"}, {0x164, R"(\<t)"},
    {0x165, R"(\<t)"}, {0x166, R"(\/T)"}, {0x167, R"(\/t)"}, {0x168, R"(\~U)"}, {0x169, R"(\~u)"},
    {0x16A, R"(\=U)"}, {0x16B, R"(\=u)"}, {0x16C, R"(\(U)"}, {0x16D, R"(\(u)"}, {0x16E, R"(\%U)"},
    {0x16F, R"(\%u)"}, {0x170, R"(\>U)"}, {0x171, R"(\>u)"}, {0x172, R"(\,U)"}, {0x173, R"(\,u)"},
    {0x174, R"(\^W)"}, {0x175, R"(\^w)"}, {0x176, R"(\^Y)"}, {0x177, R"(\^y)"}, {0x178, R"(\"Y)"},
    {0x179, R"(\'Z)"}, {0x17A, R"(\'z)"}, {0x17B, R"(\.Z)"}, {0x17C, R"(\.z)"}, {0x17D, R"(\<Z)"},
    {0x17E, R"(\<z)"},
    // Latin Extended-B.
    {0x180, R"(\/b)"}, {0x189, R"(\/D)"}, {0x197, R"(\/I)"}, {0x1B5, R"(\/Z)"}, {0x1B6, R"(\/z)"},
    {0x1C4, R"(D\^Z)"}, {0x1C5, R"(D\^z)"}, {0x1C6, R"(d\^z)"}, {0x1C7, "LJ"}, {0x1C8, "Lj"}, {0x1C9, "lj"},
    {0x1CA, "NJ"}, {0x1CB, "Nj"}, {0x1CC, "nj"}, {0x1CD, R"(\<A)"}, {0x1CE, R"(\<a)"}, {0x1CF, R"(\<I)"},
    {0x1D0, R"(\<i)"}, {0x1D1, R"(\<O)"}, {0x1D2, R"(\<o)"}, {0x1D3, R"(\<U)"}, {0x1D4, R"(\<u)"},
    {0x1E2, R"(\=A\=E)"}, {0x1E3, R"(\=a\=E)"}, {0x1E4, R"(\/G)"}, {0x1E5, R"(\/g)"}, {0x1E6, R"(\<G)"},
    {0x1E7, R"(\<g)"}, {0x1E8, R"(\<K)"}, {0x1E9, R"(\<k)"}, {0x1F0, R"(\<j)"}, {0x1F1, "DZ"}, {0x1F2, "Dz"},
    {0x1F3, "dz"}, {0x1F4, R"(\'G)"}, {0x1F5, R"(\'g)"}, {0x1F8, R"(\`N)"}, {0x1F9, R"(\`n)"},
    {0x1FC, R"(A\'E)"}, {0x1FD, R"(a\'e)"}, {0x200, R"(\>A)"}, {0x201, R"(\>a)"}, {0x204, R"(\>E)"},
    {0x205, R"(\>e)"}, {0x208, R"(\>I)"}, {0x209, R"(\>i)"}, {0x20C, R"(\>O)"}, {0x20D, R"(\>o)"},
    {0x210, R"(\>R)"}, {0x211, R"(\>r)"}, {0x214, R"(\>U)"}, {0x215, R"(\>u)"}, {0x21E, R"(\<H)"},
    {0x21F, R"(\<h)"}, {0x226, R"(\.A)"}, {0x227, R"(\.a)"}, {0x228, R"(\,E)"}, {0x229, R"(\,e)"},
    {0x22E, R"(\.O)"}, {0x22F, R"(\.o)"}, {0x232, R"(\=Y)"}, {0x233, R"(\=y)"},
    // Spaces, dashes and punctuation: one blank for every width of space.
    {0x2000, " "}, {0x2001, " "}, {0x2002, " "}, {0x2003, " "}, {0x2004, " "}, {0x2005, " "}, {0x2006, " "},
    {0x2007, " "}, {0x2008, " "}, {0x2009, " "}, {0x2010, "-"}, {0x2011, "-"}, {0x2012, "--"}, {0x2013, "--"},
    {0x2014, "---"}, {0x2015, "----"}, {0x2039, "<"}, {0x203A, ">"}, {0x203C, "!!"}, {0x2044, "/"},
    {0x2047, "??"}, {0x2048, "?!"}, {0x2049, "!?"},
    // Arrows, mathematical signs and brackets: the CIF words for them.
    {0x2190, R"(\\leftarrow)"}, {0x2192, R"(\\rightarrow)"}, {0x2212, "-"}, {0x2213, "-+"}, {0x2215, "/"},
    {0x221E, R"(\\infty)"}, {0x223C, R"(\\sim)"}, {0x2245, R"(\\simeq)"}, {0x2260, R"(\\neq)"},
    {0x2329, R"(\\langle)"}, {0x232A, R"(\\rangle)"}, {0x25A1, R"(\\square)"}, {0x3008, R"(\\langle)"},
    {0x3009, R"(\\rangle)"}
};
// clang-format on

const QHash<QChar, QString>& escapeTable()
{
    static const QHash<QChar, QString> table = [] {
        QHash<QChar, QString> hash;
        hash.reserve(static_cast<qsizetype>(std::size(kRows)));
        for (const SpecialCharacter& row : kRows)
            hash.insert(QChar(row.code), QString::fromLatin1(row.text));
        return hash;
    }();
    return table;
}

// Printable ASCII has no row and makes up nearly all of a CIF, so it is copied without a lookup.
bool needsLookup(QChar c)
{
    return c.unicode() < 0x20 || c.unicode() >= 0x7F;
}

} // namespace

SpecialCharacterRows specialCharacterRows()
{
    return {kRows, std::size(kRows)};
}

QString escapeSpecialCharacters(const QString& text)
{
    const QChar* const end = text.cend();
    const QChar* special = std::find_if(text.cbegin(), end, needsLookup);
    if (special == end)
        return text;

    const QHash<QChar, QString>& table = escapeTable();
    QString result;
    result.reserve(text.size() + 16);
    result.append(text.cbegin(), special - text.cbegin());
    while (special != end) {
        const auto row = table.constFind(*special);
        if (row == table.cend())
            result.append(*special);
        else
            result.append(*row);
        const QChar* plain = special + 1;
        special = std::find_if(plain, end, needsLookup);
        result.append(plain, special - plain);
    }
    return result;
}

QChar greekLetterForSymbolCode(QChar latin)
{
    // The font's own layout, letter by letter: mostly by sound, with c for chi, q for theta and
    // the variant forms on j, v, J and V.
    static constexpr char16_t lower[26] = {
        0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3, 0x03B7, 0x03B9,
        0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1,
        0x03C3, 0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6,
    };
    static constexpr char16_t upper[26] = {
        0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399,
        0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F, 0x03A0, 0x0398, 0x03A1,
        0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, 0x039E, 0x03A8, 0x0396,
    };
    const char16_t code = latin.unicode();
    if (code >= u'a' && code <= u'z')
        return QChar(lower[code - u'a']);
    if (code >= u'A' && code <= u'Z')
        return QChar(upper[code - u'A']);
    return QChar();
}
