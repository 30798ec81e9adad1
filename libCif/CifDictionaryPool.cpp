#include "CifDictionaryPool.h"

#include <algorithm>
#include <set>

CifDictionaryPool::CifDictionaryPool() : fallback_(new CifConcreteDictionary)
{
}

void CifDictionaryPool::add(const HCifConcreteDictionary& dictionary)
{
    if (!dictionary)
        return;
    dictionaries_.push_back(dictionary);
    rebuild_index();
}

void CifDictionaryPool::remove(const HCifConcreteDictionary& dictionary)
{
    auto it = std::find(dictionaries_.begin(), dictionaries_.end(), dictionary);
    if (it == dictionaries_.end())
        return;
    dictionaries_.erase(it);
    rebuild_index();
}

void CifDictionaryPool::rebuild_index()
{
    index_.clear();
    for (const HCifConcreteDictionary& dictionary : dictionaries_) {
        dictionary->each_name([&](const std::string& name, const CifDictionaryEntry& entry) {
            index_.emplace(name, Owner{dictionary.get(), &entry});
        });
    }
    changed();
}

const CifDictionaryEntry& CifDictionaryPool::find(const std::string& name) const
{
    auto it = index_.find(name);
    return it == index_.end() ? *fallback_->entry_or_default(name) : *it->second.entry;
}

bool CifDictionaryPool::exists(const std::string& name) const
{
    return index_.count(name) != 0;
}
const std::string& CifDictionaryPool::category(const std::string& n) const
{
    return find(n).category;
}
const std::string& CifDictionaryPool::list_link_parent(const std::string& n) const
{
    return find(n).list_link_parent;
}
const CifDictionary::Strings& CifDictionaryPool::list_reference(const std::string& n) const
{
    return find(n).list_reference;
}
const std::string& CifDictionaryPool::enumeration_default(const std::string& n) const
{
    return find(n).enumeration_default;
}
const std::string& CifDictionaryPool::enumeration_range(const std::string& n) const
{
    return find(n).enumeration_range;
}
const std::string& CifDictionaryPool::definition(const std::string& n) const
{
    return find(n).definition;
}
const std::string& CifDictionaryPool::units(const std::string& n) const
{
    return find(n).units;
}
const std::string& CifDictionaryPool::units_detail(const std::string& n) const
{
    return find(n).units_detail;
}
const std::string& CifDictionaryPool::type_construct(const std::string& n) const
{
    return find(n).type_construct;
}
const std::string& CifDictionaryPool::list_uniqueness(const std::string& n) const
{
    return find(n).list_uniqueness;
}
int CifDictionaryPool::type(const std::string& n) const
{
    return find(n).type;
}
int CifDictionaryPool::type_conditions(const std::string& n) const
{
    return find(n).type_conditions;
}
int CifDictionaryPool::list(const std::string& n) const
{
    return find(n).list;
}
bool CifDictionaryPool::list_mandatory(const std::string& n) const
{
    return find(n).list_mandatory;
}
const CifDictionary::Strings& CifDictionaryPool::list_link_child(const std::string& n) const
{
    return find(n).list_link_child;
}
const CifDictionary::Pairs& CifDictionaryPool::example(const std::string& n) const
{
    return find(n).example;
}
const CifDictionary::Pairs& CifDictionaryPool::enumeration(const std::string& n) const
{
    return find(n).enumeration;
}
const CifDictionary::Related& CifDictionaryPool::related(const std::string& n) const
{
    return find(n).related;
}

const CifDictionaryHeader& CifDictionaryPool::header(const std::string& name) const
{
    auto it = index_.find(name);
    return it == index_.end() ? fallback_->header(name) : it->second.dictionary->header();
}

void CifDictionaryPool::category_names(Strings& out) const
{
    std::set<std::string, CifNameLess> all;
    for (const HCifConcreteDictionary& dictionary : dictionaries_) {
        Strings some;
        dictionary->category_names(some);
        all.insert(some.begin(), some.end());
    }
    out.insert(out.end(), all.begin(), all.end());
}

bool CifDictionaryPool::has_category(const std::string& category) const
{
    return std::any_of(dictionaries_.begin(), dictionaries_.end(),
                       [&](const HCifConcreteDictionary& d) { return d->has_category(category); });
}

void CifDictionaryPool::category_items(const std::string& category, Strings& out) const
{
    std::set<std::string, CifNameLess> all;
    for (const HCifConcreteDictionary& dictionary : dictionaries_) {
        Strings some;
        dictionary->category_items(category, some);
        all.insert(some.begin(), some.end());
    }
    out.insert(out.end(), all.begin(), all.end());
}

bool CifDictionaryPool::in_category(const std::string& category, const std::string& name) const
{
    return std::any_of(dictionaries_.begin(), dictionaries_.end(),
                       [&](const HCifConcreteDictionary& d) { return d->in_category(category, name); });
}

const CifDictionaryEntry* CifDictionaryPool::find_entry(const std::string& name) const
{
    auto it = index_.find(name);
    return it == index_.end() ? nullptr : it->second.entry;
}
