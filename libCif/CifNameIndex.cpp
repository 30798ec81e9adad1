#include "CifNameIndex.h"

#include "CifNameCompare.h"

#include <cstdint>
#include <cstring>
#include <utility>

std::size_t CifNameIndex::hash(std::string_view name)
{
    // Eight bytes at a time, each with its 0x20 bit set: that folds A-Z onto a-z (and a few
    // other pairs of bytes onto each other, which only costs a comparison when they meet).
    constexpr std::uint64_t case_bits = 0x2020202020202020u;
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15u;
    std::uint64_t h = name.size() * multiplier;
    const char* p = name.data();
    std::size_t n = name.size();
    for (; n >= 8; p += 8, n -= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        h = (h ^ (word | case_bits)) * multiplier;
        h ^= h >> 29;
    }
    if (n > 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, p, n);
        h = (h ^ (word | case_bits)) * multiplier;
        h ^= h >> 29;
    }
    return static_cast<std::size_t>(h ^ (h >> 32));
}

HCifDataItem CifNameIndex::find(std::string_view name) const
{
    if (slots_.empty())
        return HCifDataItem();
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = home(name);; i = (i + 1) & mask) {
        const HCifDataItem& slot = slots_[i];
        if (!slot)
            return HCifDataItem();
        if (cif_names_equal(slot->name(), name))
            return slot;
    }
}

void CifNameIndex::insert(const HCifDataItem& item)
{
    // At most three quarters full, so that a probe soon meets a free slot.
    if (4 * (count_ + 1) > 3 * slots_.size())
        grow();
    slots_[free_slot(item->name())] = item;
    ++count_;
}

void CifNameIndex::erase(const HCifDataItem& item)
{
    if (slots_.empty())
        return;
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = home(item->name());
    while (slots_[i] && slots_[i] != item)
        i = (i + 1) & mask;
    if (!slots_[i])
        return;
    slots_[i] = HCifDataItem();
    --count_;
    // Moves back the items after the freed slot that could no longer be reached from their home
    // slot, up to the next free slot, so that lookups need no markers for erased items.
    for (std::size_t j = (i + 1) & mask; slots_[j]; j = (j + 1) & mask) {
        const std::size_t k = home(slots_[j]->name());
        const bool reachable = i <= j ? (i < k && k <= j) : (i < k || k <= j);
        if (reachable)
            continue;
        slots_[i] = std::move(slots_[j]);
        slots_[j] = HCifDataItem();
        i = j;
    }
}

void CifNameIndex::clear()
{
    if (count_ == 0)
        return;
    for (HCifDataItem& slot : slots_)
        slot = HCifDataItem();
    count_ = 0;
}

void CifNameIndex::grow()
{
    std::vector<HCifDataItem> old(slots_.empty() ? 16 : 2 * slots_.size());
    old.swap(slots_);
    for (HCifDataItem& item : old) {
        if (!item)
            continue;
        // The slot first: the handle's assignment takes its argument before the left side is
        // worked out, and the name is gone once the handle has been moved from.
        const std::size_t i = free_slot(item->name());
        slots_[i] = std::move(item);
    }
}

std::size_t CifNameIndex::free_slot(std::string_view name) const
{
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = home(name);
    while (slots_[i])
        i = (i + 1) & mask;
    return i;
}
