#ifndef CIFWARD_CIFVALUELIST_H
#define CIFWARD_CIFVALUELIST_H

#include "CifArena.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

// Thrown as a length error: the values of one item would pass what 32-bit offsets reach.
[[noreturn]] void cif_value_list_too_long();

// Characters of one data item's values. Up to local_capacity of them live in the object itself,
// so the one short value of a single item costs no allocation; the append that a loop column
// makes for every value it reads is inline and copies nothing but the value.
class CifCharBuffer {
public:
    static constexpr std::uint32_t local_capacity = 16;

    CifCharBuffer() = default;
    CifCharBuffer(const CifCharBuffer& other);
    CifCharBuffer& operator=(const CifCharBuffer& other);
    ~CifCharBuffer() { release(); }

    const char* data() const { return on_heap() ? storage_.heap : storage_.local; }
    char* data() { return on_heap() ? storage_.heap : storage_.local; }
    std::uint32_t size() const { return size_; }
    std::uint32_t capacity() const { return capacity_; }

    // Appends and gives the new size. The text may lie in this buffer.
    std::uint32_t append(std::string_view text)
    {
        if (text.size() > capacity_ - size_)
            return append_grown(text);
        copy(data() + size_, text.data(), text.size());
        size_ += static_cast<std::uint32_t>(text.size());
        return size_;
    }
    // Replaces the whole content. The text may lie in this buffer.
    void assign(std::string_view text);
    // Writes over characters already held: [offset, offset + text.size()) must lie within size().
    void overwrite(std::uint32_t offset, std::string_view text)
    {
        if (!text.empty())
            std::memmove(data() + offset, text.data(), text.size());
    }
    void erase(std::uint32_t offset, std::uint32_t count);
    void truncate(std::uint32_t size) { size_ = size; }
    void clear() { size_ = 0; }
    void reserve(std::uint32_t capacity);
    void shrink_to_fit();
    void swap(CifCharBuffer& other) noexcept;
    // Room for `n` more characters at the end, to be written there and then counted by added().
    char* room(std::uint32_t n)
    {
        if (n > capacity_ - size_)
            reserve(grown_capacity(n));
        return data() + size_;
    }
    void added(std::uint32_t n) { size_ += n; }
    // Takes characters that live in memory owned elsewhere (an arena), more than fit in the
    // object, in place of its own; they are never freed or grown here.
    void refer_to(char* chars, std::uint32_t size)
    {
        release();
        storage_.heap = chars;
        size_ = capacity_ = size;
    }
    // Lets go of characters taken by refer_to, without freeing them.
    void forget()
    {
        capacity_ = local_capacity;
        size_ = 0;
    }

private:
    // Most values are a few characters long, for which a call to memmove costs more than the
    // copy: up to 16 bytes are moved as two overlapping words, all loaded before any is stored,
    // so that the source may overlap the target as it may for memmove.
    static void copy(char* to, const char* from, std::size_t n)
    {
        if (n >= 8 && n <= 16) {
            std::uint64_t head, tail;
            std::memcpy(&head, from, 8);
            std::memcpy(&tail, from + n - 8, 8);
            std::memcpy(to, &head, 8);
            std::memcpy(to + n - 8, &tail, 8);
        } else if (n >= 4 && n < 8) {
            std::uint32_t head, tail;
            std::memcpy(&head, from, 4);
            std::memcpy(&tail, from + n - 4, 4);
            std::memcpy(to, &head, 4);
            std::memcpy(to + n - 4, &tail, 4);
        } else if (n > 0 && n < 4) {
            const char first = from[0], middle = from[n / 2], last = from[n - 1];
            to[0] = first;
            to[n / 2] = middle;
            to[n - 1] = last;
        } else if (n > 16) {
            std::memmove(to, from, n);
        }
    }
    bool on_heap() const { return capacity_ > local_capacity; }
    std::uint32_t grown_capacity(std::size_t more) const;
    std::uint32_t append_grown(std::string_view text);
    void move_to(char* chars, std::uint32_t capacity);
    void release();

    union Storage {
        char* heap;
        char local[local_capacity];
    };
    Storage storage_;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = local_capacity;
};

// A growable array of small numbers with a 32-bit size, 16 bytes rather than a vector's 24: the
// index of a value list holds a few of them, and neither their counts nor their values pass 32
// bits.
template <class T> class CifArray {
public:
    CifArray() = default;
    CifArray(const CifArray& other) { *this = other; }
    CifArray& operator=(const CifArray& other)
    {
        if (this != &other) {
            size_ = 0;
            reserve(other.size_);
            if (other.size_ > 0)
                std::memcpy(data_, other.data_, other.size_ * sizeof(T));
            size_ = other.size_;
        }
        return *this;
    }
    ~CifArray() { delete[] data_; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const T* data() const { return data_; }
    T operator[](std::size_t i) const { return data_[i]; }
    T& operator[](std::size_t i) { return data_[i]; }
    T back() const { return data_[size_ - 1]; }
    void push_back(T value)
    {
        if (size_ == capacity_)
            grow(std::size_t{size_} + 1);
        data_[size_++] = value;
    }
    void reserve(std::size_t capacity)
    {
        if (capacity > capacity_)
            reallocate(capacity);
    }
    // New entries take `value`.
    void resize(std::size_t size, T value = 0)
    {
        if (size > capacity_)
            grow(size);
        for (std::size_t i = size_; i < size; ++i)
            data_[i] = value;
        size_ = static_cast<std::uint32_t>(size);
    }
    void erase(std::size_t at, std::size_t count)
    {
        std::memmove(data_ + at, data_ + at + count, (size_ - at - count) * sizeof(T));
        size_ -= static_cast<std::uint32_t>(count);
    }
    void clear() { size_ = 0; }
    void shrink_to_fit()
    {
        if (capacity_ > size_)
            reallocate(size_);
    }
    // Room for `n` more numbers at the end, to be written there and then counted by added().
    T* room(std::size_t n)
    {
        if (n > capacity_ - size_)
            grow(std::size_t{size_} + n);
        return data_ + size_;
    }
    void added(std::size_t n) { size_ += static_cast<std::uint32_t>(n); }
    // As for CifCharBuffer: numbers in memory owned elsewhere, and letting go of them.
    void refer_to(T* data, std::size_t size)
    {
        delete[] data_;
        data_ = data;
        size_ = capacity_ = static_cast<std::uint32_t>(size);
    }
    void forget()
    {
        data_ = nullptr;
        size_ = capacity_ = 0;
    }

private:
    void grow(std::size_t needed)
    {
        reallocate(std::max<std::size_t>({needed, 2 * std::size_t{capacity_}, 16 / sizeof(T)}));
    }
    void reallocate(std::size_t capacity)
    {
        if (capacity > UINT32_MAX)
            cif_value_list_too_long();
        T* fresh = capacity > 0 ? new T[capacity] : nullptr;
        if (size_ > 0)
            std::memcpy(fresh, data_, size_ * sizeof(T));
        delete[] data_;
        data_ = fresh;
        capacity_ = static_cast<std::uint32_t>(capacity);
    }

    T* data_ = nullptr;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;
};

// The values of one data item, packed: all characters in one buffer, in one of three forms.
// A single item's one value is the whole buffer, with no index at all. Values read or appended in
// order lie end to end, and each costs one byte over its text, its length (255 standing for 255
// or more, whose lengths are kept apart), plus the offset of every 32nd value: a loop's values
// are mostly a few characters long, and four bytes of index each would weigh as much as the
// text. An edit that would break that order (a longer or shorter value in the middle) turns the
// index into (offset, length) pairs, 8 bytes a value, with replaced text left as garbage until it
// is compacted; compacting puts the values end to end again.
//
// Once read, a list can be placed in its document's arena (settle): its characters and index are
// moved there at their exact sizes, and a later edit first takes a copy of its own.
class CifValueList {
public:
    CifValueList() = default;
    CifValueList(const CifValueList& other);
    CifValueList& operator=(const CifValueList& other);
    ~CifValueList() { let_go(); }

    std::size_t size() const
    {
        switch (form()) {
        case Single:
            return 1;
        case Packed:
            return index_->count;
        case Spanned:
            return index_->places.size() / 2;
        default:
            return 0;
        }
    }
    bool empty() const { return form() == Empty; }
    std::string_view at(std::size_t row) const
    {
        const char* chars = chars_.data();
        const Form shape = form();
        if (shape == Single)
            return std::string_view(chars, chars_.size());
        if (shape == Spanned)
            return std::string_view(chars + index_->places[2 * row], index_->places[2 * row + 1]);
        return std::string_view(chars + packed_offset(row), packed_length(row));
    }

    void push_back(std::string_view text)
    {
        // A placed list has its own form value, so this test sends it the slow way.
        if (form_ != Packed) {
            push_back_other(text);
            return;
        }
        Index& index = *index_;
        const std::uint32_t row = index.count;
        if (row % group == 0)
            index.places.push_back(chars_.size());
        index.lengths.push_back(text.size() < long_length ? static_cast<std::uint8_t>(text.size())
                                                          : long_length);
        if (text.size() >= long_length)
            add_long(row, text.size());
        chars_.append(text);
        index.count = row + 1;
    }
    void set(std::size_t row, std::string_view text); // row < size()
    void resize(std::size_t count);                   // new rows are empty
    void erase(std::size_t row);
    void clear();
    void shrink_to_fit();
    // Moves what lies outside the object into the arena, at its exact size.
    void settle(CifArena& arena);
    // In place of what the list held: the values at first, first + stride, ... of values that lie
    // end to end in `chars`, `ends` saying where each ends; `count` of them (at least one). Put
    // straight into the arena at their exact sizes when there is one. `chars` must be readable
    // 16 characters past the last value, which lets short values be copied in blocks.
    void assign_column(CifArena* arena, const char* chars, const std::uint32_t* ends, std::size_t first,
                       std::size_t stride, std::size_t count);

private:
    // The low bits: the form. The placed bit: the characters and index lie in an arena.
    enum Form : std::uint8_t { Empty = 0, Single = 1, Packed = 2, Spanned = 3, placed = 4 };
    static constexpr std::uint32_t group = 32;
    static constexpr std::uint8_t long_length = 255;

    // What a list of more than one value needs besides its characters; a single item has none.
    struct Index {
        std::uint32_t count = 0;        // Packed: the number of values
        CifArray<std::uint8_t> lengths; // Packed: each value's length, long_length for a long one
        // Packed: the offset of each group's first value. Spanned: (offset, length) of each value.
        CifArray<std::uint32_t> places;
        CifArray<std::uint32_t> longs; // Packed: (row, length) of each long value, in row order
    };

    Form form() const { return static_cast<Form>(form_ & 3); }
    bool is_placed() const { return (form_ & placed) != 0; }
    std::size_t packed_length(std::size_t row) const
    {
        const std::uint8_t length = index_->lengths[row];
        return length < long_length ? length : long_value_length(row);
    }
    std::size_t packed_offset(std::size_t row) const
    {
        const Index& index = *index_;
        const std::size_t first = row - row % group;
        std::size_t offset = index.places[row / group];
        const std::uint8_t* lengths = index.lengths.data();
        for (std::size_t i = first; i < row; ++i)
            offset += lengths[i];
        if (!index.longs.empty())
            offset += long_excess(first, row);
        return offset;
    }
    std::size_t long_value_length(std::size_t row) const;
    // What the long values of rows [first, row) hold beyond the long_length counted for each.
    std::size_t long_excess(std::size_t first, std::size_t row) const;
    void add_long(std::uint32_t row, std::size_t length);
    void push_back_other(std::string_view text);
    std::uint32_t append_chars(std::string_view text);
    void make_packed();
    void make_spans();
    void compact();
    void rebuild_places();
    // Before an edit of a placed list: copies of its own in place of what lies in the arena.
    void own();
    // Frees what is its own and forgets what lies in an arena, leaving the list empty.
    void let_go();

    CifCharBuffer chars_;
    Index* index_ = nullptr;
    std::uint32_t garbage_ = 0;
    std::uint8_t form_ = Empty;
};

#endif
