#ifndef CIFWARD_CIFVALUELIST_H
#define CIFWARD_CIFVALUELIST_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The values of one data item, packed: all characters in one buffer and an (offset, length)
// pair per value. A loop column of short values costs about 8 bytes a value over its text,
// where a vector of strings would cost 32.
class CifValueList {
public:
    std::size_t size() const { return spans_.size(); }
    bool empty() const { return spans_.empty(); }
    std::string_view at(std::size_t row) const
    {
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
    void compact();

    std::string chars_;
    std::vector<Span> spans_;
    std::size_t garbage_ = 0;
};

#endif
