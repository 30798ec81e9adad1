#include "ElementSet.h"

#include <algorithm>

void ElementSet::add(const Element& e)
{
    if (!contains(e))
        elements_.push_back(e);
}

bool ElementSet::contains(const Element& e) const
{
    return std::find(elements_.begin(), elements_.end(), e) != elements_.end();
}
