#include "CifConcreteDictionary.h"

namespace {
const CifDictionaryEntry& undefined_entry()
{
    static const CifDictionaryEntry entry;
    return entry;
}
} // namespace

std::string CifConcreteDictionary::category_key(const std::string& category)
{
    std::string key = category;
    if (key.empty() || key[0] != '_')
        key.insert(0, "_");
    if (key.size() < 4 || key.compare(key.size() - 3, 3, "_[]") != 0)
        key += "_[]";
    return key;
}

void CifConcreteDictionary::add_entry(const Strings& names, const CifDictionaryEntry& entry)
{
    changed();
    auto shared = std::make_shared<const CifDictionaryEntry>(entry);
    for (const std::string& name : names) {
        if (!entries_.emplace(name, shared).second)
            continue;
        if (!entry.category.empty())
            by_category_[category_key(entry.category)].insert(name);
    }
}

void CifConcreteDictionary::clear()
{
    changed();
    entries_.clear();
    by_category_.clear();
    header_ = CifDictionaryHeader();
}

const CifDictionaryEntry& CifConcreteDictionary::find(const std::string& name) const
{
    auto it = entries_.find(name);
    return it == entries_.end() ? undefined_entry() : *it->second;
}

bool CifConcreteDictionary::exists(const std::string& name) const
{
    return entries_.count(name) != 0;
}
const std::string& CifConcreteDictionary::category(const std::string& n) const
{
    return find(n).category;
}
const std::string& CifConcreteDictionary::list_link_parent(const std::string& n) const
{
    return find(n).list_link_parent;
}
const CifDictionary::Strings& CifConcreteDictionary::list_reference(const std::string& n) const
{
    return find(n).list_reference;
}
const std::string& CifConcreteDictionary::enumeration_default(const std::string& n) const
{
    return find(n).enumeration_default;
}
const std::string& CifConcreteDictionary::enumeration_range(const std::string& n) const
{
    return find(n).enumeration_range;
}
const std::string& CifConcreteDictionary::definition(const std::string& n) const
{
    return find(n).definition;
}
const std::string& CifConcreteDictionary::units(const std::string& n) const
{
    return find(n).units;
}
const std::string& CifConcreteDictionary::units_detail(const std::string& n) const
{
    return find(n).units_detail;
}
const std::string& CifConcreteDictionary::type_construct(const std::string& n) const
{
    return find(n).type_construct;
}
const std::string& CifConcreteDictionary::list_uniqueness(const std::string& n) const
{
    return find(n).list_uniqueness;
}
int CifConcreteDictionary::type(const std::string& n) const
{
    return find(n).type;
}
int CifConcreteDictionary::type_conditions(const std::string& n) const
{
    return find(n).type_conditions;
}
int CifConcreteDictionary::list(const std::string& n) const
{
    return find(n).list;
}
bool CifConcreteDictionary::list_mandatory(const std::string& n) const
{
    return find(n).list_mandatory;
}
const CifDictionary::Strings& CifConcreteDictionary::list_link_child(const std::string& n) const
{
    return find(n).list_link_child;
}
const CifDictionary::Pairs& CifConcreteDictionary::example(const std::string& n) const
{
    return find(n).example;
}
const CifDictionary::Pairs& CifConcreteDictionary::enumeration(const std::string& n) const
{
    return find(n).enumeration;
}
const CifDictionary::Related& CifConcreteDictionary::related(const std::string& n) const
{
    return find(n).related;
}

const CifDictionaryHeader& CifConcreteDictionary::header(const std::string& name) const
{
    static const CifDictionaryHeader none;
    return exists(name) ? header_ : none;
}

void CifConcreteDictionary::category_names(Strings& out) const
{
    for (const auto& category : by_category_)
        out.push_back(category.first);
}

bool CifConcreteDictionary::has_category(const std::string& category) const
{
    return by_category_.count(category_key(category)) != 0;
}

void CifConcreteDictionary::category_items(const std::string& category, Strings& out) const
{
    auto it = by_category_.find(category_key(category));
    if (it != by_category_.end())
        out.insert(out.end(), it->second.begin(), it->second.end());
}

bool CifConcreteDictionary::in_category(const std::string& category, const std::string& name) const
{
    auto it = by_category_.find(category_key(category));
    return it != by_category_.end() && it->second.count(name) != 0;
}

const CifDictionaryEntry* CifConcreteDictionary::entry(const std::string& name) const
{
    auto it = entries_.find(name);
    return it == entries_.end() ? nullptr : it->second.get();
}
