#include "CifValueList.h"

#include <stdexcept>

std::uint32_t CifValueList::append_chars(std::string_view text)
{
    if (chars_.size() + text.size() > UINT32_MAX)
        compact();
    if (chars_.size() + text.size() > UINT32_MAX)
        throw std::length_error("CifValueList: the values of one data item exceed 4 GiB");
    const std::uint32_t offset = static_cast<std::uint32_t>(chars_.size());
    chars_.append(text.data(), text.size());
    return offset;
}

void CifValueList::make_spans()
{
    if (!single_)
        return;
    single_ = false;
    spans_.push_back({0, static_cast<std::uint32_t>(chars_.size())});
}

void CifValueList::push_back(std::string_view text)
{
    if (empty()) {
        chars_.assign(text.data(), text.size());
        garbage_ = 0;
        single_ = true;
        return;
    }
    make_spans();
    const std::uint32_t offset = append_chars(text);
    spans_.push_back({offset, static_cast<std::uint32_t>(text.size())});
}

void CifValueList::set(std::size_t row, std::string_view text)
{
    if (single_) {
        chars_.assign(text.data(), text.size());
        return;
    }
    Span& span = spans_[row];
    if (text.size() <= span.length) {
        // Overwrite in place; the tail of the old text becomes garbage.
        chars_.replace(span.offset, text.size(), text.data(), text.size());
        garbage_ += span.length - text.size();
        span.length = static_cast<std::uint32_t>(text.size());
    } else {
        garbage_ += span.length;
        const std::uint32_t offset = append_chars(text);
        spans_[row] = {offset, static_cast<std::uint32_t>(text.size())};
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
        garbage_ = 0;
        single_ = true;
        return;
    }
    make_spans();
    if (count < spans_.size()) {
        for (std::size_t i = count; i < spans_.size(); ++i)
            garbage_ += spans_[i].length;
        spans_.resize(count);
    } else {
        spans_.resize(count, Span{static_cast<std::uint32_t>(chars_.size()), 0});
    }
}

void CifValueList::erase(std::size_t row)
{
    if (single_) {
        clear();
        return;
    }
    garbage_ += spans_[row].length;
    spans_.erase(spans_.begin() + static_cast<std::ptrdiff_t>(row));
    if (garbage_ > 4096 && garbage_ > chars_.size() / 2)
        compact();
}

void CifValueList::clear()
{
    chars_.clear();
    spans_.clear();
    garbage_ = 0;
    single_ = false;
}

void CifValueList::shrink_to_fit()
{
    if (garbage_ > 0)
        compact();
    chars_.shrink_to_fit();
    spans_.shrink_to_fit();
}

void CifValueList::compact()
{
    if (single_)
        return;
    std::string packed;
    packed.reserve(chars_.size() - garbage_);
    for (Span& span : spans_) {
        const std::uint32_t offset = static_cast<std::uint32_t>(packed.size());
        packed.append(chars_, span.offset, span.length);
        span.offset = offset;
    }
    chars_.swap(packed);
    garbage_ = 0;
}
