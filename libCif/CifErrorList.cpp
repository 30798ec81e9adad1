#include "CifErrorList.h"

#include "CifMessageTable.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace {
// Texts are copied into chunks of this size; a longer text gets a chunk of its own.
constexpr std::size_t chunk_size = 1 << 16;
} // namespace

const char* CifErrorList::keep(std::string_view text)
{
    if (text.empty())
        return nullptr;
    if (text.size() > chunk_size / 4) {
        std::unique_ptr<char[]> own(new char[text.size()]);
        std::memcpy(own.get(), text.data(), text.size());
        const char* at = own.get();
        // Before the chunk being filled, if there is one: the last chunk takes the short texts.
        chunks_.insert(chunk_room_ == 0 ? chunks_.end() : chunks_.end() - 1, std::move(own));
        return at;
    }
    if (chunk_room_ - chunk_used_ < text.size()) {
        chunks_.push_back(std::unique_ptr<char[]>(new char[chunk_size]));
        chunk_used_ = 0;
        chunk_room_ = chunk_size;
    }
    char* at = chunks_.back().get() + chunk_used_;
    std::memcpy(at, text.data(), text.size());
    chunk_used_ += text.size();
    return at;
}

void CifErrorList::add(std::uint32_t code, std::string_view first, std::string_view second, std::int32_t line)
{
    if (is_suppressed(code))
        return;
    const char* kept_first = keep(first);
    const char* kept_second = keep(second);
    records_.push_back({code, line, kept_first, kept_second, static_cast<std::uint32_t>(first.size()),
                        static_cast<std::uint32_t>(second.size())});
}

CifError CifErrorList::make(std::size_t index) const
{
    const Record& r = records_[index];
    const auto text = [](const char* at, std::uint32_t size) {
        return size ? std::string(at, size) : std::string();
    };
    return CifError(r.code, text(r.first, r.first_size), text(r.second, r.second_size), r.line);
}

CifError CifErrorList::at(std::size_t index) const
{
    if (index >= records_.size())
        throw std::out_of_range("CifErrorList has no finding " + std::to_string(index));
    return make(index);
}

void CifErrorList::clear()
{
    records_.clear();
    chunks_.clear();
    chunk_used_ = chunk_room_ = 0;
}

std::size_t CifErrorList::count_of_severity(int severity) const
{
    std::size_t n = 0;
    for (const Record& r : records_)
        n += cif_message(r.code).severity == severity;
    return n;
}
