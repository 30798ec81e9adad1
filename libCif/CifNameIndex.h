#ifndef CIFWARD_CIFNAMEINDEX_H
#define CIFWARD_CIFNAMEINDEX_H

#include "CifDataItem.h"

#include <cstddef>
#include <string_view>
#include <vector>

// The items of one block by name, without regard to case: a hash table with open addressing
// over handles of the items. A tree node would cost 80 bytes an item and a lookup a dozen name
// comparisons; here a slot costs 16 bytes, and a lookup one hash and about one comparison.
class CifNameIndex {
public:
    HCifDataItem find(std::string_view name) const;
    // No item of the same name may be in the index.
    void insert(const HCifDataItem& item);
    void erase(const HCifDataItem& item);
    std::size_t size() const { return count_; }
    // Empties the index and keeps its room.
    void clear();

    // Equal for names that differ only in case.
    static std::size_t hash(std::string_view name);

private:
    std::size_t home(std::string_view name) const { return hash(name) & (slots_.size() - 1); }
    void grow();
    // The first free slot on the probe path of a name.
    std::size_t free_slot(std::string_view name) const;

    std::vector<HCifDataItem> slots_; // a power of two of them, or none; null where free
    std::size_t count_ = 0;
};

#endif
