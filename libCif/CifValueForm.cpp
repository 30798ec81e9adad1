#include "CifValueForm.h"

#include "CifNameCompare.h"

namespace {

// The characters of one line that the reader keeps.
constexpr std::size_t cif_longest_line = 2048;

bool is_graphic(unsigned char c)
{
    return c > 32 && c < 127;
}

// A quote inside a quoted value closes it when a non-graphic character follows.
bool quote_ends_early(std::string_view value, char quote)
{
    for (std::size_t i = 0; i + 1 < value.size(); ++i)
        if (value[i] == quote && !is_graphic(static_cast<unsigned char>(value[i + 1])))
            return true;
    return false;
}

bool reads_as_other_token(std::string_view value)
{
    if (value.empty())
        return false;
    switch (value[0]) {
    case '_':
    case '[':
    case ']':
    case '#':
    case '\'':
    case '"':
    case '$':
    case ';':
        return true;
    default:
        break;
    }
    for (const char* reserved : {"data_", "loop_", "save_", "global_", "stop_"})
        if (cif_starts_with_nocase(value, reserved))
            return true;
    return false;
}

// This program's reader takes the value back from a bare word, though other readers may not.
bool bare_reads_back(std::string_view value)
{
    if (value.empty() || value.find_first_of(" \t\v\f") != std::string_view::npos)
        return false;
    switch (value[0]) {
    case '_':
    case '#':
    case '\'':
    case '"':
    case ';':
        return false;
    default:
        return !cif_starts_with_nocase(value, "data_") && !cif_starts_with_nocase(value, "loop_");
    }
}

} // namespace

void cif_write_closing_comment(std::ostream& stream, const std::string& comment)
{
    stream << comment;
    if (!comment.empty() && comment.back() != '\n')
        stream << '\n';
}

CifValueForm cif_value_form(std::string_view value, bool in_loop)
{
    if (value.find_first_of("\n\r") != std::string_view::npos)
        return CifValueForm::TextBlock;
    const bool quoted = (in_loop && value.empty()) ||
                        value.find_first_of(" \t\v\f") != std::string_view::npos ||
                        reads_as_other_token(value);
    if (!quoted)
        return CifValueForm::Bare;
    // A closing quote after a backslash does not close the value for this program's reader, and
    // a quoted value must fit in the longest line it reads. Where quotes cannot serve, a bare
    // word that this reader takes back is better than a text block, which adds a line end.
    if ((!value.empty() && value.back() == '\\') || value.size() + 2 > cif_longest_line)
        return bare_reads_back(value) ? CifValueForm::Bare : CifValueForm::TextBlock;
    char quote = value.find('\'') == std::string_view::npos ? '\'' : '"';
    if (quote_ends_early(value, quote)) {
        const char other = quote == '\'' ? '"' : '\'';
        if (quote_ends_early(value, other))
            return CifValueForm::TextBlock;
        quote = other;
    }
    return quote == '\'' ? CifValueForm::SingleQuoted : CifValueForm::DoubleQuoted;
}

void cif_write_inline_value(std::ostream& stream, std::string_view value, CifValueForm form)
{
    if (form == CifValueForm::SingleQuoted)
        stream << '\'' << value << '\'';
    else if (form == CifValueForm::DoubleQuoted)
        stream << '"' << value << '"';
    else
        stream << value;
}
