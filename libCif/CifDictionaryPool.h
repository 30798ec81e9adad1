#ifndef CIFWARD_CIFDICTIONARYPOOL_H
#define CIFWARD_CIFDICTIONARYPOOL_H

#include "CifConcreteDictionary.h"

#include <map>
#include <string>
#include <vector>

// Several dictionaries behind one interface. A name is answered wholly by the first dictionary,
// in order of addition, that defines it; a name that none defines gets the defaults. The pool
// indexes its dictionaries' entries when one is added or removed: a dictionary is not read again
// while a pool holds it.
class CifDictionaryPool : public CifDictionary {
public:
    using Dictionaries = std::vector<HCifConcreteDictionary>;
    using const_iterator = Dictionaries::const_iterator;

    CifDictionaryPool();

    void add(const HCifConcreteDictionary& dictionary);
    void remove(const HCifConcreteDictionary& dictionary);
    const_iterator begin() const { return dictionaries_.begin(); }
    const_iterator end() const { return dictionaries_.end(); }
    std::size_t size() const { return dictionaries_.size(); }

    bool exists(const std::string& name) const override;
    const std::string& category(const std::string& name) const override;
    const std::string& list_link_parent(const std::string& name) const override;
    const Strings& list_reference(const std::string& name) const override;
    const std::string& enumeration_default(const std::string& name) const override;
    const std::string& enumeration_range(const std::string& name) const override;
    const std::string& definition(const std::string& name) const override;
    const std::string& units(const std::string& name) const override;
    const std::string& units_detail(const std::string& name) const override;
    const std::string& type_construct(const std::string& name) const override;
    const std::string& list_uniqueness(const std::string& name) const override;
    int type(const std::string& name) const override;
    int type_conditions(const std::string& name) const override;
    int list(const std::string& name) const override;
    bool list_mandatory(const std::string& name) const override;
    const Strings& list_link_child(const std::string& name) const override;
    const Pairs& example(const std::string& name) const override;
    const Pairs& enumeration(const std::string& name) const override;
    const Related& related(const std::string& name) const override;
    const CifDictionaryHeader& header(const std::string& name) const override;
    void category_names(Strings& out) const override;
    bool has_category(const std::string& category) const override;
    void category_items(const std::string& category, Strings& out) const override;
    bool in_category(const std::string& category, const std::string& name) const override;
    const CifDictionaryEntry* find_entry(const std::string& name) const override;

private:
    struct Owner {
        const CifConcreteDictionary* dictionary;
        const CifDictionaryEntry* entry;
    };
    const CifDictionaryEntry& find(const std::string& name) const;
    void rebuild_index();

    HCifConcreteDictionary fallback_;
    Dictionaries dictionaries_;
    // Each name with the dictionary that answers for it, so that a lookup costs one search
    // whatever the number of dictionaries.
    std::map<std::string, Owner, CifNameLess> index_;
};

using HCifDictionaryPool = THandle<CifDictionaryPool>;

#endif
