#include "CifLoop.h"

#include "CifNameCompare.h"
#include "CifValueForm.h"

#include <algorithm>

namespace {
std::vector<std::string>::iterator find_name(std::vector<std::string>& names, const std::string& name)
{
    return std::find_if(names.begin(), names.end(),
                        [&name](const std::string& n) { return cif_names_equal(n, name); });
}
} // namespace

CifLoop::CifLoop(std::vector<std::string> names) : names_(std::move(names))
{
}

bool CifLoop::contains(const std::string& name) const
{
    // Loops have tens of columns, not thousands: a scan costs less than keeping every name twice
    // in a tree, which a file of a hundred thousand loops would feel.
    return std::any_of(names_.begin(), names_.end(),
                       [&name](const std::string& n) { return cif_names_equal(n, name); });
}

void CifLoop::add(const std::string& name)
{
    if (contains(name))
        return;
    names_.push_back(name);
}

void CifLoop::remove(const std::string& name)
{
    auto it = find_name(names_, name);
    if (it == names_.end())
        return;
    names_.erase(it);
}

void CifLoop::move_to_end(const std::string& name)
{
    auto it = find_name(names_, name);
    if (it == names_.end())
        return;
    std::string moved = *it;
    names_.erase(it);
    names_.push_back(moved);
}

void CifLoop::reorder(const std::vector<std::string>& names)
{
    std::size_t write = 0;
    for (const std::string& name : names) {
        if (write >= names_.size())
            break;
        auto it = std::find_if(names_.begin() + static_cast<std::ptrdiff_t>(write), names_.end(),
                               [&name](const std::string& n) { return cif_names_equal(n, name); });
        if (it == names_.end())
            continue;
        std::iter_swap(names_.begin() + static_cast<std::ptrdiff_t>(write), it);
        ++write;
    }
}

void CifLoop::set_note(std::size_t row, const std::string& text)
{
    if (row >= notes_.size())
        notes_.resize(row + 1);
    notes_[row] = text;
}

void CifLoop::add_names_to(std::vector<std::string>& out) const
{
    out.insert(out.end(), names_.begin(), names_.end());
}

void CifLoop::write(std::ostream& stream, const std::vector<HCifDataItem>& items, unsigned line_limit) const
{
    const long limit = static_cast<long>(line_limit);
    if (has_comment(1))
        stream << comment(1);
    stream << "loop_";
    if (has_comment(2))
        stream << ' ' << comment(2);
    else
        stream << '\n';

    for (const HCifDataItem& item : items) {
        if (item->has_comment(0))
            stream << item->comment(0);
        stream << item->name();
        if (item->has_comment(1))
            stream << ' ' << item->comment(1);
        else
            stream << '\n';
    }
    if (!notes_.empty())
        stream << notes_[0];

    // The longest column sets the rows, so that no value of a ragged loop is lost; the short
    // columns are padded with ''.
    std::size_t rows = 0;
    for (const HCifDataItem& item : items)
        rows = std::max(rows, item->value_count());
    for (std::size_t row = 0; row < rows; ++row) {
        long col = 0;
        bool line_ended = false;
        for (const HCifDataItem& item : items) {
            const std::string_view v = item->value_view(row);
            const long length = static_cast<long>(v.size());
            const CifValueForm form = cif_value_form(v, true);
            if (form == CifValueForm::TextBlock) {
                if (col != 0)
                    stream << '\n';
                stream << ';' << v;
                if (v.empty() || v.back() != '\n')
                    stream << '\n';
                stream << ";\n";
                col = 0;
                line_ended = true;
                continue;
            }
            const long margin = cif_is_quoted(form) ? 4 : 2;
            // No break at the start of a line: an empty line there would read back as part of the
            // loop's note.
            if (col > 0 && col + length > limit - margin) {
                stream << '\n';
                col = 0;
            }
            if (col != 0) {
                stream << ' ';
                ++col;
            }
            cif_write_inline_value(stream, v, form);
            col += length + (cif_is_quoted(form) ? 2 : 0);
            line_ended = false;
        }
        if (!line_ended)
            stream << '\n';
    }

    for (const HCifDataItem& item : items)
        cif_write_closing_comment(stream, item->comment(3));
}
