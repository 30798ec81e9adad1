#ifndef CIFWARD_CIFDICTIONARY_H
#define CIFWARD_CIFDICTIONARY_H

#include "CifDictionaryEntry.h"
#include "THandle.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// What the engine asks about a data name. Every query about a name that is not defined answers
// the field's default and never fails.
class CifDictionary {
public:
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    using Related = std::vector<std::pair<std::string, int>>;
    using Strings = std::vector<std::string>;

    virtual ~CifDictionary() = default;
    virtual bool exists(const std::string& name) const = 0;
    virtual const std::string& category(const std::string& name) const = 0;
    virtual const std::string& list_link_parent(const std::string& name) const = 0;
    virtual const Strings& list_reference(const std::string& name) const = 0;
    virtual const std::string& enumeration_default(const std::string& name) const = 0;
    virtual const std::string& enumeration_range(const std::string& name) const = 0;
    virtual const std::string& definition(const std::string& name) const = 0;
    virtual const std::string& units(const std::string& name) const = 0;
    virtual const std::string& units_detail(const std::string& name) const = 0;
    virtual const std::string& type_construct(const std::string& name) const = 0;
    virtual const std::string& list_uniqueness(const std::string& name) const = 0;
    virtual int type(const std::string& name) const = 0;
    virtual int type_conditions(const std::string& name) const = 0;
    virtual int list(const std::string& name) const = 0;
    virtual bool list_mandatory(const std::string& name) const = 0;
    virtual const Strings& list_link_child(const std::string& name) const = 0;
    virtual const Pairs& example(const std::string& name) const = 0;
    virtual const Pairs& enumeration(const std::string& name) const = 0;
    virtual const Related& related(const std::string& name) const = 0;
    virtual const CifDictionaryHeader& header(const std::string& name) const = 0;
    virtual void category_names(Strings& out) const = 0;
    virtual bool has_category(const std::string& category) const = 0;
    virtual void category_items(const std::string& category, Strings& out) const = 0;
    virtual bool in_category(const std::string& category, const std::string& name) const = 0;
    // The whole entry that answers for `name`, or null when no dictionary defines it: one lookup
    // where a check would otherwise ask field by field.
    virtual const CifDictionaryEntry* find_entry(const std::string& name) const = 0;

    // Rises whenever what the dictionary answers may have changed, so that a data item can keep
    // the answers about its own name between changes.
    std::uint64_t revision() const { return revision_; }

protected:
    void changed() { ++revision_; }

private:
    std::uint64_t revision_ = 0;
};

using HCifDictionary = THandle<CifDictionary>;

#endif
