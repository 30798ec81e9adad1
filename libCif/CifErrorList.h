#ifndef CIFWARD_CIFERRORLIST_H
#define CIFWARD_CIFERRORLIST_H

#include "CifError.h"
#include "THandle.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <memory>
#include <set>
#include <string_view>
#include <vector>

// Findings in order of discovery, with a set of codes whose findings are dropped on arrival.
//
// A file can hold a finding for every data item, hundreds of thousands of them, so they are kept
// packed: a code, a line and the two texts in a common store of characters, about a third of the
// room of as many CifError objects with their own strings. A finding is made whole when it is
// looked at.
class CifErrorList {
public:
    class const_iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = CifError;
        using difference_type = std::ptrdiff_t;
        using reference = CifError;
        // What -> needs: the finding itself, kept for the length of the expression.
        struct pointer {
            CifError error;
            const CifError* operator->() const { return &error; }
        };

        const_iterator() = default;
        CifError operator*() const { return list_->make(index_); }
        pointer operator->() const { return {list_->make(index_)}; }
        const_iterator& operator++()
        {
            ++index_;
            return *this;
        }
        const_iterator operator++(int)
        {
            const_iterator before = *this;
            ++index_;
            return before;
        }
        const_iterator operator+(difference_type n) const
        {
            return {list_, index_ + static_cast<std::size_t>(n)};
        }
        difference_type operator-(const const_iterator& other) const
        {
            return static_cast<difference_type>(index_) - static_cast<difference_type>(other.index_);
        }
        friend bool operator==(const const_iterator& a, const const_iterator& b)
        {
            return a.index_ == b.index_;
        }
        friend bool operator!=(const const_iterator& a, const const_iterator& b)
        {
            return a.index_ != b.index_;
        }

    private:
        friend class CifErrorList;
        const_iterator(const CifErrorList* list, std::size_t index) : list_(list), index_(index) {}
        const CifErrorList* list_ = nullptr;
        std::size_t index_ = 0;
    };

    CifErrorList() = default;
    CifErrorList(const CifErrorList&) = delete;
    CifErrorList& operator=(const CifErrorList&) = delete;

    void add(const CifError& error) { add(error.code, error.first, error.second, error.line); }
    // The same without making a CifError first: what the reader uses for every finding.
    void add(std::uint32_t code, std::string_view first, std::string_view second, std::int32_t line);
    void add(std::uint32_t code, std::string_view first, std::int32_t line) { add(code, first, {}, line); }
    void add(std::uint32_t code, std::int32_t line) { add(code, {}, {}, line); }
    void clear();
    std::size_t count() const { return records_.size(); }
    bool is_empty() const { return records_.empty(); }
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, records_.size()}; }
    // Throws std::out_of_range for an index at or beyond count().
    CifError at(std::size_t index) const;
    std::size_t count_of_severity(int severity) const;

    void suppress(std::uint32_t code) { suppressed_.insert(code); }
    void unsuppress(std::uint32_t code) { suppressed_.erase(code); }
    bool is_suppressed(std::uint32_t code) const { return suppressed_.count(code) != 0; }

private:
    struct Record {
        std::uint32_t code;
        std::int32_t line;
        const char* first;
        const char* second;
        std::uint32_t first_size;
        std::uint32_t second_size;
    };

    CifError make(std::size_t index) const;
    // A lasting copy of `text` in the store of characters.
    const char* keep(std::string_view text);

    std::deque<Record> records_;
    std::vector<std::unique_ptr<char[]>> chunks_;
    std::size_t chunk_used_ = 0;
    std::size_t chunk_room_ = 0;
    std::set<std::uint32_t> suppressed_;
};

using HCifErrorList = THandle<CifErrorList>;

#endif
