#include "CifDictionaryText.h"

#include <vector>

namespace {
bool is_space(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f' || c == '\n';
}

bool blank(std::string_view line)
{
    for (char c : line)
        if (!is_space(c))
            return false;
    return true;
}
} // namespace

std::string cif_normalise_text(std::string_view text)
{
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find('\n', start);
        lines.push_back(
            text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
        if (end == std::string_view::npos)
            break;
        start = end + 1;
    }
    std::size_t first = 0, last = lines.size();
    while (first < last && blank(lines[first]))
        ++first;
    while (last > first && blank(lines[last - 1]))
        --last;
    if (first == last)
        return std::string();

    std::size_t indent = std::string_view::npos;
    for (std::size_t i = first; i < last; ++i) {
        std::size_t n = 0;
        while (n < lines[i].size() && is_space(lines[i][n]))
            ++n;
        if (n < indent)
            indent = n;
    }
    std::string out;
    for (std::size_t i = first; i < last; ++i) {
        if (i > first)
            out += '\n';
        const std::string_view line = lines[i];
        out.append(line.substr(indent < line.size() ? indent : line.size()));
    }
    return out;
}
