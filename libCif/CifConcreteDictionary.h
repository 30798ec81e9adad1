#ifndef CIFWARD_CIFCONCRETEDICTIONARY_H
#define CIFWARD_CIFCONCRETEDICTIONARY_H

#include "CifDictionary.h"
#include "CifErrorList.h"
#include "CifNameCompare.h"

#include <istream>
#include <map>
#include <memory>
#include <set>
#include <string>

// One dictionary in memory. Entries are found by data name without regard to case; categories
// are kept in their "_name_[]" form.
class CifConcreteDictionary : public CifDictionary {
public:
    // Reads one dictionary file. Its findings go to `errors`; a file that raises any finding
    // while being read as CIF builds no entries.
    void read(std::istream& stream, const HCifErrorList& errors);

    // The entry that defines `name`, or null; entry_or_default gives the defaults instead.
    const CifDictionaryEntry* entry(const std::string& name) const;
    const CifDictionaryEntry* entry_or_default(const std::string& name) const { return &find(name); }
    // Calls `visit(name, entry)` for every name, in order of name.
    template <class Visit> void each_name(Visit visit) const
    {
        for (const auto& named : entries_)
            visit(named.first, *named.second);
    }
    const CifDictionaryHeader& header() const { return header_; }

    // Enters `entry` under each of `names`; a name already present keeps its first entry.
    void add_entry(const Strings& names, const CifDictionaryEntry& entry);
    void set_header(const CifDictionaryHeader& header) { header_ = header; }
    void clear();
    std::size_t entry_count() const { return entries_.size(); }

    // "cell" becomes "_cell_[]"; a text already in that form is kept.
    static std::string category_key(const std::string& category);

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
    const CifDictionaryEntry* find_entry(const std::string& name) const override { return entry(name); }

private:
    const CifDictionaryEntry& find(const std::string& name) const;
    void read_definition(const class CifDataBlock& block, const HCifErrorList& errors,
                         std::vector<std::pair<Strings, CifDictionaryEntry>>& out) const;

    std::map<std::string, std::shared_ptr<const CifDictionaryEntry>, CifNameLess> entries_;
    std::map<std::string, std::set<std::string, CifNameLess>, CifNameLess> by_category_;
    CifDictionaryHeader header_;
};

using HCifConcreteDictionary = THandle<CifConcreteDictionary>;

#endif
