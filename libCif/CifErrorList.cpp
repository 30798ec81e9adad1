#include "CifErrorList.h"

#include <algorithm>

void CifErrorList::add(const CifError& error)
{
    if (!is_suppressed(error.code))
        errors_.push_back(error);
}

void CifErrorList::add(CifError&& error)
{
    if (!is_suppressed(error.code))
        errors_.push_back(std::move(error));
}

void CifErrorList::clear()
{
    errors_.clear();
}

std::size_t CifErrorList::count_of_severity(int severity) const
{
    return static_cast<std::size_t>(std::count_if(
        errors_.begin(), errors_.end(), [severity](const CifError& e) { return e.severity() == severity; }));
}
