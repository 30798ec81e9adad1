#pragma once

#include "MoleculeError.h"

#include <map>
#include <vector>

// Values in order of insertion, found by position and by value alike: the order in which atoms
// and bonds were added is what a user sees as their numbering.
template <class Value> class IndexedTable {
public:
    using const_iterator = typename std::vector<Value>::const_iterator;

    int size() const { return static_cast<int>(values_.size()); }
    bool contains(const Value& v) const { return positions_.count(v) != 0; }
    const Value& value(int i) const
    {
        if (i < 0 || i >= size())
            throw molecule_error("IndexedTable::value Illegal index");
        return values_[static_cast<std::size_t>(i)];
    }
    int index(const Value& v) const
    {
        const auto it = positions_.find(v);
        if (it == positions_.end())
            throw molecule_error("IndexedTable::index(Value): Unknown value.");
        return it->second;
    }
    void add(const Value& v)
    {
        if (positions_.emplace(v, size()).second)
            values_.push_back(v);
    }
    void remove(const Value& v)
    {
        const int i = index(v);
        positions_.erase(v);
        values_.erase(values_.begin() + i);
        for (int k = i; k < size(); ++k)
            positions_[values_[static_cast<std::size_t>(k)]] = k;
    }
    // Puts the values in the order given by `order`, a permutation of the positions.
    void reorder(const std::vector<Value>& order)
    {
        values_ = order;
        for (int k = 0; k < size(); ++k)
            positions_[values_[static_cast<std::size_t>(k)]] = k;
    }
    void clear()
    {
        values_.clear();
        positions_.clear();
    }
    const_iterator begin() const { return values_.begin(); }
    const_iterator end() const { return values_.end(); }

private:
    std::vector<Value> values_;
    std::map<Value, int> positions_;
};
