#pragma once

#include "Element.h"

#include <vector>

// A list of elements without duplicates, in the order they were added.
class ElementSet {
public:
    void add(const Element& e);
    bool contains(const Element& e) const;
    std::size_t size() const { return elements_.size(); }
    const std::vector<Element>& elements() const { return elements_; }

private:
    std::vector<Element> elements_;
};
