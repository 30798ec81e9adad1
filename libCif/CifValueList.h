#ifndef CIFWARD_CIFVALUELIST_H
#define CIFWARD_CIFVALUELIST_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The values of one data item, packed: all characters in one buffer and an (offset, length)
// pair per value. A loop column of short values costs about 8 bytes a value over its text,
// where a vector of strings would cost 32. A single item's one value is the whole buffer and
// needs no pair at all.
class CifValueList {
public:
    std::size_t size() const { return single_ ? 1 : spans_.size(); }
    bool empty() const { return !single_ && spans_.empty(); }
    std::string_view at(std::size_t row) const
    {
        if (single_)
            return chars_;
        const Span& s = spans_[row];
        return std::string_view(chars_.data() + s.offset, s.length);
    }

    void push_back(std::string_view text);
    void set(std::size_t row, std::string_view text); // row < size()
    void resize(std::size_t count);                   // new rows are empty
    void erase(std::size_t row);
    void clear();
    void shrink_to_fit();

private:
    struct Span {
        std::uint32_t offset;
        std::uint32_t length;
    };
    std::uint32_t append_chars(std::string_view text);
    void make_spans();
    void compact();

    std::string chars_;
    std::vector<Span> spans_;
    std::size_t garbage_ = 0;
    bool single_ = false;
};

#endif
