#ifndef CIFWARD_CIFERRORLIST_H
#define CIFWARD_CIFERRORLIST_H

#include "CifError.h"
#include "THandle.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <set>

// Findings in order of discovery, with a set of codes whose findings are dropped on arrival. They
// are kept in segments rather than one array: a file with a finding on every item has hundreds
// of thousands, and an array that doubles would hold them twice while it grows.
class CifErrorList {
public:
    using const_iterator = std::deque<CifError>::const_iterator;

    void add(const CifError& error);
    void add(CifError&& error);
    void clear();
    std::size_t count() const { return errors_.size(); }
    bool is_empty() const { return errors_.empty(); }
    const_iterator begin() const { return errors_.begin(); }
    const_iterator end() const { return errors_.end(); }
    const CifError& at(std::size_t index) const { return errors_.at(index); }
    std::size_t count_of_severity(int severity) const;

    void suppress(std::uint32_t code) { suppressed_.insert(code); }
    void unsuppress(std::uint32_t code) { suppressed_.erase(code); }
    bool is_suppressed(std::uint32_t code) const { return suppressed_.count(code) != 0; }

private:
    std::deque<CifError> errors_;
    std::set<std::uint32_t> suppressed_;
};

using HCifErrorList = THandle<CifErrorList>;

#endif
