#ifndef CIFWARD_CIFSHAREDDICTIONARY_H
#define CIFWARD_CIFSHAREDDICTIONARY_H

#include "CifDictionary.h"

// Answers with the answers of another dictionary that several threads read at once. Handles are
// counted without locks, so a thread must never copy a handle that another thread copies too;
// each thread holds its own one of these instead, and only its own count moves. The dictionary
// read through it must outlive it and must not change while it is read (lookups are const and
// keep no caches).
class CifSharedDictionary : public CifDictionary {
public:
    explicit CifSharedDictionary(const CifDictionary& shared) : shared_(shared) {}

    bool exists(const std::string& name) const override { return shared_.exists(name); }
    const std::string& category(const std::string& name) const override { return shared_.category(name); }
    const std::string& list_link_parent(const std::string& name) const override
    {
        return shared_.list_link_parent(name);
    }
    const Strings& list_reference(const std::string& name) const override
    {
        return shared_.list_reference(name);
    }
    const std::string& enumeration_default(const std::string& name) const override
    {
        return shared_.enumeration_default(name);
    }
    const std::string& enumeration_range(const std::string& name) const override
    {
        return shared_.enumeration_range(name);
    }
    const std::string& definition(const std::string& name) const override { return shared_.definition(name); }
    const std::string& units(const std::string& name) const override { return shared_.units(name); }
    const std::string& units_detail(const std::string& name) const override
    {
        return shared_.units_detail(name);
    }
    const std::string& type_construct(const std::string& name) const override
    {
        return shared_.type_construct(name);
    }
    const std::string& list_uniqueness(const std::string& name) const override
    {
        return shared_.list_uniqueness(name);
    }
    int type(const std::string& name) const override { return shared_.type(name); }
    int type_conditions(const std::string& name) const override { return shared_.type_conditions(name); }
    int list(const std::string& name) const override { return shared_.list(name); }
    bool list_mandatory(const std::string& name) const override { return shared_.list_mandatory(name); }
    const Strings& list_link_child(const std::string& name) const override
    {
        return shared_.list_link_child(name);
    }
    const Pairs& example(const std::string& name) const override { return shared_.example(name); }
    const Pairs& enumeration(const std::string& name) const override { return shared_.enumeration(name); }
    const Related& related(const std::string& name) const override { return shared_.related(name); }
    const CifDictionaryHeader& header(const std::string& name) const override { return shared_.header(name); }
    void category_names(Strings& out) const override { shared_.category_names(out); }
    bool has_category(const std::string& category) const override { return shared_.has_category(category); }
    void category_items(const std::string& category, Strings& out) const override
    {
        shared_.category_items(category, out);
    }
    bool in_category(const std::string& category, const std::string& name) const override
    {
        return shared_.in_category(category, name);
    }
    const CifDictionaryEntry* find_entry(const std::string& name) const override
    {
        return shared_.find_entry(name);
    }

private:
    const CifDictionary& shared_;
};

#endif
