#ifndef CIFWARD_CIFVALUELIST_H
#define CIFWARD_CIFVALUELIST_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

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

// The offsets that index a value list: a vector of 32-bit numbers in 16 bytes rather than 24,
// since neither their count nor their values can pass 32 bits.
class CifOffsets {
public:
    CifOffsets() = default;
    CifOffsets(const CifOffsets& other);
    CifOffsets& operator=(const CifOffsets& other);
    ~CifOffsets() { delete[] data_; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    std::uint32_t operator[](std::size_t i) const { return data_[i]; }
    std::uint32_t& operator[](std::size_t i) { return data_[i]; }
    void push_back(std::uint32_t value)
    {
        if (size_ == capacity_)
            grow(size_ + std::size_t{1});
        data_[size_++] = value;
    }
    void reserve(std::size_t capacity)
    {
        if (capacity > capacity_)
            reallocate(capacity);
    }
    // New entries take `value`.
    void resize(std::size_t size, std::uint32_t value = 0);
    void erase(std::size_t at, std::size_t count);
    void clear() { size_ = 0; }
    void shrink_to_fit();
    void swap(CifOffsets& other) noexcept;

private:
    void grow(std::size_t needed);
    void reallocate(std::size_t capacity);

    std::uint32_t* data_ = nullptr;
    std::uint32_t size_ = 0;
    std::uint32_t capacity_ = 0;
};

// The values of one data item, packed: all characters in one buffer, in one of three forms.
// A single item's one value is the whole buffer. Values read or appended in order lie end to
// end, and each costs 4 bytes over its text: the offset where it ends. An edit that would break
// that order (a longer or shorter value in the middle) turns the index into (offset, length)
// pairs, 8 bytes a value, with replaced text left as garbage until it is compacted; compacting
// puts the values end to end again. A vector of strings would cost 32 bytes a value.
class CifValueList {
public:
    std::size_t size() const { return single_ ? 1 : (spanned_ ? index_.size() / 2 : index_.size()); }
    bool empty() const { return !single_ && index_.empty(); }
    std::string_view at(std::size_t row) const
    {
        const char* chars = chars_.data();
        if (single_)
            return std::string_view(chars, chars_.size());
        if (spanned_)
            return std::string_view(chars + index_[2 * row], index_[2 * row + 1]);
        const std::uint32_t begin = row == 0 ? 0 : index_[row - 1];
        return std::string_view(chars + begin, index_[row] - begin);
    }

    void push_back(std::string_view text)
    {
        if (!single_ && !spanned_ && !index_.empty())
            index_.push_back(chars_.append(text));
        else
            push_back_other(text);
    }
    void set(std::size_t row, std::string_view text); // row < size()
    void resize(std::size_t count);                   // new rows are empty
    void erase(std::size_t row);
    void clear();
    void shrink_to_fit();

private:
    void push_back_other(std::string_view text);
    std::uint32_t append_chars(std::string_view text);
    void make_index();
    void make_spans();
    void compact();

    CifCharBuffer chars_;
    // End to end: the end of each value. Spanned: offset and length of each value.
    CifOffsets index_;
    std::uint32_t garbage_ = 0;
    bool single_ = false;
    bool spanned_ = false;
};

#endif
