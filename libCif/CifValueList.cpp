#include "CifValueList.h"

#include <algorithm>
#include <stdexcept>

namespace {
[[noreturn]] void too_long()
{
    throw std::length_error("CifValueList: the values of one data item exceed 4 GiB");
}
} // namespace

CifCharBuffer::CifCharBuffer(const CifCharBuffer& other)
{
    if (other.size_ > local_capacity) {
        storage_.heap = new char[other.size_];
        capacity_ = other.size_;
    }
    if (other.size_ > 0)
        std::memcpy(data(), other.data(), other.size_);
    size_ = other.size_;
}

CifCharBuffer& CifCharBuffer::operator=(const CifCharBuffer& other)
{
    if (this != &other)
        assign(std::string_view(other.data(), other.size_));
    return *this;
}

void CifCharBuffer::release()
{
    if (on_heap())
        delete[] storage_.heap;
    capacity_ = local_capacity;
    size_ = 0;
}

std::uint32_t CifCharBuffer::append_grown(std::string_view text)
{
    const std::uint64_t needed = static_cast<std::uint64_t>(size_) + text.size();
    if (needed > UINT32_MAX)
        too_long();
    // Doubling keeps a long column's appends linear; the spare room goes once the loop is read.
    const std::uint64_t capacity = std::min<std::uint64_t>(
        UINT32_MAX, std::max<std::uint64_t>({needed, 2 * static_cast<std::uint64_t>(capacity_), 64}));
    char* grown = new char[capacity];
    // The text may lie in the old characters, which are freed only after it has been copied.
    if (size_ > 0)
        std::memcpy(grown, data(), size_);
    if (!text.empty())
        std::memcpy(grown + size_, text.data(), text.size());
    const std::uint32_t size = static_cast<std::uint32_t>(needed);
    release();
    storage_.heap = grown;
    capacity_ = static_cast<std::uint32_t>(capacity);
    size_ = size;
    return size_;
}

void CifCharBuffer::assign(std::string_view text)
{
    if (text.size() <= capacity_) {
        if (!text.empty())
            std::memmove(data(), text.data(), text.size());
        size_ = static_cast<std::uint32_t>(text.size());
        return;
    }
    if (text.size() > UINT32_MAX)
        too_long();
    char* fresh = new char[text.size()];
    std::memcpy(fresh, text.data(), text.size());
    release();
    storage_.heap = fresh;
    capacity_ = static_cast<std::uint32_t>(text.size());
    size_ = capacity_;
}

void CifCharBuffer::erase(std::uint32_t offset, std::uint32_t count)
{
    char* chars = data();
    std::memmove(chars + offset, chars + offset + count, size_ - offset - count);
    size_ -= count;
}

// Moves the characters into `chars` (null: into the object itself), which holds `capacity`.
void CifCharBuffer::move_to(char* chars, std::uint32_t capacity)
{
    char* old = on_heap() ? storage_.heap : nullptr;
    const std::uint32_t size = size_;
    if (size > 0)
        std::memcpy(chars ? chars : storage_.local, old ? old : storage_.local, size);
    if (chars)
        storage_.heap = chars;
    capacity_ = chars ? capacity : local_capacity;
    delete[] old;
}

void CifCharBuffer::reserve(std::uint32_t capacity)
{
    if (capacity > capacity_)
        move_to(new char[capacity], capacity);
}

void CifCharBuffer::shrink_to_fit()
{
    if (!on_heap() || capacity_ == size_)
        return;
    if (size_ <= local_capacity)
        move_to(nullptr, local_capacity);
    else
        move_to(new char[size_], size_);
}

void CifCharBuffer::swap(CifCharBuffer& other) noexcept
{
    std::swap(storage_, other.storage_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
}

CifOffsets::CifOffsets(const CifOffsets& other)
{
    if (other.size_ == 0)
        return;
    data_ = new std::uint32_t[other.size_];
    capacity_ = size_ = other.size_;
    std::memcpy(data_, other.data_, size_ * sizeof(std::uint32_t));
}

CifOffsets& CifOffsets::operator=(const CifOffsets& other)
{
    if (this != &other) {
        CifOffsets copy(other);
        swap(copy);
    }
    return *this;
}

void CifOffsets::grow(std::size_t needed)
{
    if (needed > UINT32_MAX)
        too_long();
    reallocate(
        std::min<std::size_t>(UINT32_MAX, std::max<std::size_t>({needed, 2 * std::size_t{capacity_}, 4})));
}

void CifOffsets::reallocate(std::size_t capacity)
{
    if (capacity > UINT32_MAX)
        too_long();
    std::uint32_t* fresh = capacity > 0 ? new std::uint32_t[capacity] : nullptr;
    if (size_ > 0)
        std::memcpy(fresh, data_, size_ * sizeof(std::uint32_t));
    delete[] data_;
    data_ = fresh;
    capacity_ = static_cast<std::uint32_t>(capacity);
}

void CifOffsets::resize(std::size_t size, std::uint32_t value)
{
    if (size > capacity_)
        grow(size);
    for (std::size_t i = size_; i < size; ++i)
        data_[i] = value;
    size_ = static_cast<std::uint32_t>(size);
}

void CifOffsets::erase(std::size_t at, std::size_t count)
{
    std::memmove(data_ + at, data_ + at + count, (size_ - at - count) * sizeof(std::uint32_t));
    size_ -= static_cast<std::uint32_t>(count);
}

void CifOffsets::shrink_to_fit()
{
    if (capacity_ > size_)
        reallocate(size_);
}

void CifOffsets::swap(CifOffsets& other) noexcept
{
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
}

std::uint32_t CifValueList::append_chars(std::string_view text)
{
    if (static_cast<std::uint64_t>(chars_.size()) + text.size() > UINT32_MAX && garbage_ > 0) {
        compact();
        make_spans();
    }
    const std::uint32_t offset = chars_.size();
    chars_.append(text);
    return offset;
}

void CifValueList::make_index()
{
    if (!single_)
        return;
    single_ = false;
    spanned_ = false;
    // A second value mostly means a loop column, which grows to many more.
    index_.clear();
    index_.reserve(16);
    index_.push_back(chars_.size());
}

void CifValueList::make_spans()
{
    if (spanned_)
        return;
    if (single_) {
        single_ = false;
        index_.clear();
        index_.push_back(0);
        index_.push_back(chars_.size());
    } else {
        CifOffsets spans;
        spans.resize(2 * index_.size());
        std::uint32_t begin = 0;
        for (std::size_t i = 0; i < index_.size(); ++i) {
            spans[2 * i] = begin;
            spans[2 * i + 1] = index_[i] - begin;
            begin = index_[i];
        }
        index_.swap(spans);
    }
    spanned_ = true;
}

void CifValueList::push_back_other(std::string_view text)
{
    if (empty()) {
        chars_.assign(text);
        index_.clear();
        garbage_ = 0;
        single_ = true;
        spanned_ = false;
        return;
    }
    if (single_)
        make_index();
    if (!spanned_) {
        index_.push_back(chars_.append(text));
        return;
    }
    const std::uint32_t offset = append_chars(text);
    index_.push_back(offset);
    index_.push_back(static_cast<std::uint32_t>(text.size()));
}

void CifValueList::set(std::size_t row, std::string_view text)
{
    if (single_) {
        chars_.assign(text);
        return;
    }
    if (!spanned_) {
        const std::uint32_t begin = row == 0 ? 0 : index_[row - 1];
        if (text.size() == index_[row] - begin) {
            chars_.overwrite(begin, text);
            return;
        }
        if (row + 1 == index_.size()) {
            chars_.truncate(begin);
            index_[row] = chars_.append(text);
            return;
        }
        make_spans();
    }
    std::uint32_t& offset = index_[2 * row];
    std::uint32_t& length = index_[2 * row + 1];
    if (text.size() <= length) {
        // Overwrite in place; the tail of the old text becomes garbage.
        chars_.overwrite(offset, text);
        garbage_ += length - static_cast<std::uint32_t>(text.size());
        length = static_cast<std::uint32_t>(text.size());
    } else {
        garbage_ += length;
        const std::uint32_t at = append_chars(text);
        // append_chars may have compacted, which moves every value: index afresh.
        index_[2 * row] = at;
        index_[2 * row + 1] = static_cast<std::uint32_t>(text.size());
    }
    if (garbage_ > 4096 && garbage_ > chars_.size() / 2)
        compact();
}

void CifValueList::resize(std::size_t count)
{
    if (count == size())
        return;
    if (count == 0) {
        clear();
        return;
    }
    if (empty() && count == 1) {
        chars_.clear();
        index_.clear();
        garbage_ = 0;
        single_ = true;
        spanned_ = false;
        return;
    }
    make_index();
    const std::size_t old_count = size();
    if (!spanned_) {
        if (count < old_count) {
            chars_.truncate(index_[count - 1]);
            index_.resize(count);
        } else {
            index_.resize(count, chars_.size());
        }
        return;
    }
    if (count < old_count) {
        for (std::size_t i = count; i < old_count; ++i)
            garbage_ += index_[2 * i + 1];
        index_.resize(2 * count);
    } else {
        index_.reserve(2 * count);
        for (std::size_t i = old_count; i < count; ++i) {
            index_.push_back(chars_.size());
            index_.push_back(0);
        }
    }
}

void CifValueList::erase(std::size_t row)
{
    if (single_) {
        clear();
        return;
    }
    if (!spanned_) {
        const std::uint32_t begin = row == 0 ? 0 : index_[row - 1];
        const std::uint32_t length = index_[row] - begin;
        chars_.erase(begin, length);
        index_.erase(row, 1);
        for (std::size_t i = row; i < index_.size(); ++i)
            index_[i] -= length;
        return;
    }
    garbage_ += index_[2 * row + 1];
    index_.erase(2 * row, 2);
    if (garbage_ > 4096 && garbage_ > chars_.size() / 2)
        compact();
}

void CifValueList::clear()
{
    chars_.clear();
    index_.clear();
    garbage_ = 0;
    single_ = false;
    spanned_ = false;
}

void CifValueList::shrink_to_fit()
{
    if (spanned_)
        compact();
    chars_.shrink_to_fit();
    index_.shrink_to_fit();
}

// Puts the values end to end again, in row order, leaving out the garbage.
void CifValueList::compact()
{
    if (!spanned_)
        return;
    CifCharBuffer packed;
    packed.reserve(chars_.size() - garbage_);
    CifOffsets ends;
    ends.reserve(index_.size() / 2);
    const char* chars = chars_.data();
    for (std::size_t i = 0; i < index_.size(); i += 2)
        ends.push_back(packed.append(std::string_view(chars + index_[i], index_[i + 1])));
    chars_.swap(packed);
    index_.swap(ends);
    garbage_ = 0;
    spanned_ = false;
}
