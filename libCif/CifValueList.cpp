#include "CifValueList.h"

#include <algorithm>
#include <new>
#include <stdexcept>

void cif_value_list_too_long()
{
    throw std::length_error("CifValueList: the values of one data item exceed 4 GiB");
}

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

// Room for `more` characters past the size: at least twice the old room, which keeps a long run
// of appends linear.
std::uint32_t CifCharBuffer::grown_capacity(std::size_t more) const
{
    const std::uint64_t needed = static_cast<std::uint64_t>(size_) + more;
    if (needed > UINT32_MAX)
        cif_value_list_too_long();
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(
        UINT32_MAX, std::max<std::uint64_t>({needed, 2 * static_cast<std::uint64_t>(capacity_), 64})));
}

std::uint32_t CifCharBuffer::append_grown(std::string_view text)
{
    const std::uint64_t needed = static_cast<std::uint64_t>(size_) + text.size();
    const std::uint64_t capacity = grown_capacity(text.size());
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
        cif_value_list_too_long();
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

// A copy always owns what it holds, whether or not the original lies in an arena.
CifValueList::CifValueList(const CifValueList& other)
    : chars_(other.chars_), index_(other.index_ ? new Index(*other.index_) : nullptr),
      garbage_(other.garbage_), form_(other.form())
{
}

CifValueList& CifValueList::operator=(const CifValueList& other)
{
    if (this != &other) {
        let_go();
        chars_ = other.chars_;
        index_ = other.index_ ? new Index(*other.index_) : nullptr;
        garbage_ = other.garbage_;
        form_ = other.form();
    }
    return *this;
}

void CifValueList::let_go()
{
    if (is_placed()) {
        chars_.forget();
        if (index_) {
            index_->lengths.forget();
            index_->places.forget();
            index_->longs.forget();
            index_->~Index();
        }
    } else {
        delete index_;
    }
    index_ = nullptr;
    garbage_ = 0;
    form_ = Empty;
}

void CifValueList::own()
{
    if (!is_placed())
        return;
    CifValueList copy(*this);
    let_go();
    chars_.swap(copy.chars_);
    std::swap(index_, copy.index_);
    garbage_ = copy.garbage_;
    form_ = copy.form_;
}

namespace {
// `to` refers to a copy in the arena of what `from` holds.
template <class T> void place(CifArray<T>& to, const CifArray<T>& from, CifArena& arena)
{
    if (from.empty())
        return;
    T* at = static_cast<T*>(arena.allocate(from.size() * sizeof(T)));
    std::memcpy(at, from.data(), from.size() * sizeof(T));
    to.refer_to(at, from.size());
}
} // namespace

void CifValueList::settle(CifArena& arena)
{
    if (is_placed() || form_ == Empty)
        return;
    if (form_ == Spanned)
        compact();
    bool moved = false;
    if (chars_.size() > CifCharBuffer::local_capacity) {
        char* at = static_cast<char*>(arena.allocate(chars_.size()));
        std::memcpy(at, chars_.data(), chars_.size());
        chars_.refer_to(at, chars_.size());
        moved = true;
    } else {
        chars_.shrink_to_fit();
    }
    if (index_) {
        Index* index = new (arena.allocate(sizeof(Index))) Index;
        index->count = index_->count;
        place(index->lengths, index_->lengths, arena);
        place(index->places, index_->places, arena);
        place(index->longs, index_->longs, arena);
        delete index_;
        index_ = index;
        moved = true;
    }
    if (moved)
        form_ |= placed;
}

namespace {
// The first of the (row, length) pairs whose row is not below `row`; the pairs are in row order.
std::size_t first_long_from(const CifArray<std::uint32_t>& longs, std::size_t row)
{
    std::size_t low = 0, high = longs.size() / 2;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (longs[2 * middle] < row)
            low = middle + 1;
        else
            high = middle;
    }
    return 2 * low;
}
} // namespace

std::size_t CifValueList::long_value_length(std::size_t row) const
{
    return index_->longs[first_long_from(index_->longs, row) + 1];
}

std::size_t CifValueList::long_excess(std::size_t first, std::size_t row) const
{
    const CifArray<std::uint32_t>& longs = index_->longs;
    std::size_t excess = 0;
    for (std::size_t i = first_long_from(longs, first); i < longs.size() && longs[i] < row; i += 2)
        excess += longs[i + 1] - long_length;
    return excess;
}

void CifValueList::add_long(std::uint32_t row, std::size_t length)
{
    index_->longs.push_back(row);
    index_->longs.push_back(static_cast<std::uint32_t>(length));
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

// From one value to the packed form, for a second value: mostly a loop column, which grows to
// many more.
void CifValueList::make_packed()
{
    const std::size_t length = chars_.size();
    delete index_;
    index_ = new Index;
    index_->count = 1;
    index_->places.push_back(0);
    index_->lengths.reserve(16);
    index_->lengths.push_back(length < long_length ? static_cast<std::uint8_t>(length) : long_length);
    if (length >= long_length)
        add_long(0, length);
    form_ = Packed;
}

void CifValueList::make_spans()
{
    if (form_ == Spanned)
        return;
    CifArray<std::uint32_t> spans;
    if (form_ == Single) {
        delete index_;
        index_ = new Index;
        spans.push_back(0);
        spans.push_back(chars_.size());
    } else {
        const std::size_t count = index_->count;
        spans.reserve(2 * count);
        std::size_t offset = 0;
        for (std::size_t row = 0; row < count; ++row) {
            const std::size_t length = packed_length(row);
            spans.push_back(static_cast<std::uint32_t>(offset));
            spans.push_back(static_cast<std::uint32_t>(length));
            offset += length;
        }
    }
    index_->count = 0;
    index_->lengths = CifArray<std::uint8_t>();
    index_->longs = CifArray<std::uint32_t>();
    index_->places = std::move(spans);
    form_ = Spanned;
}

// The offset of each group's first value, worked out again from the lengths.
void CifValueList::rebuild_places()
{
    Index& index = *index_;
    index.places.clear();
    std::size_t offset = 0;
    for (std::size_t row = 0; row < index.count; ++row) {
        if (row % group == 0)
            index.places.push_back(static_cast<std::uint32_t>(offset));
        offset += packed_length(row);
    }
}

void CifValueList::push_back_other(std::string_view text)
{
    if (is_placed()) {
        own();
        push_back(text);
        return;
    }
    if (form_ == Empty) {
        chars_.assign(text);
        garbage_ = 0;
        form_ = Single;
        return;
    }
    if (form_ == Single) {
        make_packed();
        push_back(text);
        return;
    }
    const std::uint32_t offset = append_chars(text);
    index_->places.push_back(offset);
    index_->places.push_back(static_cast<std::uint32_t>(text.size()));
}

void CifValueList::set(std::size_t row, std::string_view text)
{
    own();
    if (form_ == Single) {
        chars_.assign(text);
        return;
    }
    if (form_ == Packed) {
        Index& index = *index_;
        const std::size_t offset = packed_offset(row);
        const std::size_t length = packed_length(row);
        if (text.size() == length) {
            chars_.overwrite(static_cast<std::uint32_t>(offset), text);
            return;
        }
        if (row + 1 == index.count) {
            // The last value: cut it off and append the new one, whose length replaces its own.
            if (length >= long_length)
                index.longs.resize(index.longs.size() - 2);
            index.lengths[row] =
                text.size() < long_length ? static_cast<std::uint8_t>(text.size()) : long_length;
            if (text.size() >= long_length)
                add_long(static_cast<std::uint32_t>(row), text.size());
            chars_.truncate(static_cast<std::uint32_t>(offset));
            chars_.append(text);
            return;
        }
        make_spans();
    }
    CifArray<std::uint32_t>& spans = index_->places;
    std::uint32_t length = spans[2 * row + 1];
    if (text.size() <= length) {
        // Overwrite in place; the tail of the old text becomes garbage.
        chars_.overwrite(spans[2 * row], text);
        garbage_ += length - static_cast<std::uint32_t>(text.size());
        spans[2 * row + 1] = static_cast<std::uint32_t>(text.size());
    } else {
        garbage_ += length;
        const std::uint32_t at = append_chars(text);
        // append_chars may have compacted, which moves every value: index afresh.
        index_->places[2 * row] = at;
        index_->places[2 * row + 1] = static_cast<std::uint32_t>(text.size());
    }
    if (garbage_ > 4096 && garbage_ > chars_.size() / 2)
        compact();
}

void CifValueList::resize(std::size_t count)
{
    if (count == size())
        return;
    own();
    if (count == 0) {
        clear();
        return;
    }
    if (form_ == Empty && count == 1) {
        chars_.clear();
        garbage_ = 0;
        form_ = Single;
        return;
    }
    if (form_ == Single)
        make_packed();
    const std::size_t old_count = size();
    if (count > old_count) {
        for (std::size_t i = old_count; i < count; ++i)
            push_back(std::string_view());
        return;
    }
    if (form_ == Packed) {
        Index& index = *index_;
        chars_.truncate(static_cast<std::uint32_t>(packed_offset(count)));
        index.lengths.resize(count);
        index.places.resize((count + group - 1) / group);
        std::size_t kept = 0;
        while (kept < index.longs.size() && index.longs[kept] < count)
            kept += 2;
        index.longs.resize(kept);
        index.count = static_cast<std::uint32_t>(count);
        return;
    }
    for (std::size_t i = count; i < old_count; ++i)
        garbage_ += index_->places[2 * i + 1];
    index_->places.resize(2 * count);
}

void CifValueList::erase(std::size_t row)
{
    own();
    if (form_ == Single) {
        clear();
        return;
    }
    if (form_ == Packed) {
        Index& index = *index_;
        const std::size_t offset = packed_offset(row);
        const std::size_t length = packed_length(row);
        chars_.erase(static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length));
        index.lengths.erase(row, 1);
        CifArray<std::uint32_t>& longs = index.longs;
        for (std::size_t i = 0; i < longs.size();) {
            if (longs[i] == row) {
                longs.erase(i, 2);
                continue;
            }
            if (longs[i] > row)
                --longs[i];
            i += 2;
        }
        --index.count;
        // Every group after the row now starts one value later.
        rebuild_places();
        if (index.count == 0)
            clear();
        return;
    }
    garbage_ += index_->places[2 * row + 1];
    index_->places.erase(2 * row, 2);
    if (index_->places.empty()) {
        clear();
        return;
    }
    if (garbage_ > 4096 && garbage_ > chars_.size() / 2)
        compact();
}

void CifValueList::clear()
{
    let_go();
    chars_.clear();
}

void CifValueList::shrink_to_fit()
{
    if (is_placed())
        return;
    if (form_ == Spanned)
        compact();
    chars_.shrink_to_fit();
    if (index_) {
        index_->lengths.shrink_to_fit();
        index_->places.shrink_to_fit();
        index_->longs.shrink_to_fit();
    }
}

// Puts the values end to end again, in row order, leaving out the garbage.
void CifValueList::compact()
{
    if (form_ != Spanned)
        return;
    CifCharBuffer packed;
    packed.reserve(chars_.size() - garbage_);
    Index* index = new Index;
    const CifArray<std::uint32_t>& spans = index_->places;
    const char* chars = chars_.data();
    const std::size_t count = spans.size() / 2;
    index->lengths.reserve(count);
    std::swap(index_, index);
    form_ = Packed;
    for (std::size_t row = 0; row < count; ++row) {
        const std::string_view text(chars + index->places[2 * row], index->places[2 * row + 1]);
        if (row % group == 0)
            index_->places.push_back(packed.size());
        index_->lengths.push_back(text.size() < long_length ? static_cast<std::uint8_t>(text.size())
                                                            : long_length);
        if (text.size() >= long_length)
            add_long(static_cast<std::uint32_t>(row), text.size());
        packed.append(text);
    }
    index_->count = static_cast<std::uint32_t>(count);
    delete index;
    chars_.swap(packed);
    garbage_ = 0;
}

void CifValueList::assign_column(CifArena* arena, const char* chars, const std::uint32_t* ends,
                                 std::size_t first, std::size_t stride, std::size_t count)
{
    const auto value = [&](std::size_t row) {
        const std::size_t i = first + row * stride;
        const std::uint32_t begin = i == 0 ? 0 : ends[i - 1];
        return std::string_view(chars + begin, ends[i] - begin);
    };
    clear();
    if (!arena) {
        for (std::size_t row = 0; row < count; ++row)
            push_back(value(row));
        shrink_to_fit();
        return;
    }
    if (count == 1) {
        push_back(value(0));
        settle(*arena);
        return;
    }
    std::size_t total = 0, longs = 0;
    for (std::size_t row = 0; row < count; ++row) {
        const std::size_t length = value(row).size();
        total += length;
        longs += length >= long_length;
    }
    if (total > UINT32_MAX || count > UINT32_MAX)
        cif_value_list_too_long();

    // Everything at its final size in the arena, then filled in one pass.
    const std::size_t groups = (count + group - 1) / group;
    // Each short value is copied as a block of 16 characters, which may reach 16 past the last.
    char* text =
        total > CifCharBuffer::local_capacity ? static_cast<char*>(arena->allocate(total + 16)) : nullptr;
    auto* lengths = static_cast<std::uint8_t*>(arena->allocate(count));
    auto* places = static_cast<std::uint32_t*>(arena->allocate(groups * sizeof(std::uint32_t)));
    auto* long_values =
        longs ? static_cast<std::uint32_t*>(arena->allocate(2 * longs * sizeof(std::uint32_t))) : nullptr;
    // Few enough characters for the object itself, written first to a buffer with the room.
    char small[2 * CifCharBuffer::local_capacity];
    char* out = text ? text : small;
    std::size_t offset = 0, next_long = 0;
    for (std::size_t row = 0; row < count; ++row) {
        const std::string_view v = value(row);
        if (row % group == 0)
            places[row / group] = static_cast<std::uint32_t>(offset);
        lengths[row] = v.size() < long_length ? static_cast<std::uint8_t>(v.size()) : long_length;
        if (v.size() >= long_length) {
            long_values[next_long++] = static_cast<std::uint32_t>(row);
            long_values[next_long++] = static_cast<std::uint32_t>(v.size());
        }
        if (v.size() <= 16)
            std::memcpy(out + offset, v.data(), 16);
        else
            std::memcpy(out + offset, v.data(), v.size());
        offset += v.size();
    }
    if (text)
        chars_.refer_to(text, static_cast<std::uint32_t>(total));
    else
        chars_.assign(std::string_view(small, total));
    // A placed list keeps nothing of its own outside the object.
    chars_.shrink_to_fit();
    index_ = new (arena->allocate(sizeof(Index))) Index;
    index_->count = static_cast<std::uint32_t>(count);
    index_->lengths.refer_to(lengths, count);
    index_->places.refer_to(places, groups);
    if (longs)
        index_->longs.refer_to(long_values, 2 * longs);
    form_ = Packed | placed;
}
