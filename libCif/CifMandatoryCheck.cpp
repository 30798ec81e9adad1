// The check of mandatory data items over a whole document.
#include "Cif.h"

namespace {

// "Known": not empty and not "?" once blanks and tabs are stripped; "." is known.
bool known(const std::string& value)
{
    const std::string::size_type begin = value.find_first_not_of(" \t");
    if (begin == std::string::npos)
        return false;
    const std::string::size_type end = value.find_last_not_of(" \t");
    return value.compare(begin, end - begin + 1, "?") != 0;
}

bool has_any_category(const CifDataBlock& block, std::initializer_list<const char*> categories)
{
    for (const char* category : categories)
        if (block.has_category(category))
            return true;
    return false;
}

void check_name(const CifDataBlock& block, const CifDictionary& dictionary, const std::string& name,
                CifErrorList& errors)
{
    if (name.empty())
        return;
    const bool set = block.has_value(name);
    const bool name_known = known(block.first_value(name));

    std::vector<std::string> alternatives;
    for (const auto& related : dictionary.related(name))
        if (related.second & (CifDictionaryEntry::Alternate | CifDictionaryEntry::Replace))
            alternatives.push_back(related.first);
    bool any_set = false, none_known = true;
    for (const std::string& alternative : alternatives) {
        any_set = any_set || block.has_value(alternative);
        // The names themselves are judged here, not their values: with an alternative set,
        // nothing is reported, whatever the values.
        none_known = none_known && !known(alternative);
    }

    if (!set && !any_set) {
        errors.add(CifError(343, name, block.name(), block.line()));
    } else if (!set && any_set) {
        if (none_known)
            for (const std::string& alternative : alternatives)
                errors.add(CifError(304, alternative, block.name(), block.line()));
    } else if (!name_known && (!any_set || none_known)) {
        errors.add(CifError(303, name, block.name(), block.line()));
    }
}

void check_block(const CifDataBlock& block, const CifDictionary& dictionary,
                 const std::vector<std::string>& names, CifErrorList& errors)
{
    for (const std::string& name : names)
        check_name(block, dictionary, name, errors);
}

} // namespace

void Cif::check_mandatory(const std::vector<std::string>& publication_items,
                          const std::vector<std::string>& crystal_items)
{
    bool publication_seen = false, crystal_seen = false;
    for (const HCifDataBlock& block : blocks_) {
        if (has_any_category(*block, {"journal", "publ"})) {
            publication_seen = true;
            check_block(*block, *dictionary_, publication_items, *errors_);
        }
        if (has_any_category(*block, {"atom_site", "atom_sites", "atom_type", "cell", "chemical", "diffrn",
                                      "exptl", "geom", "refine", "reflns", "symmetry"})) {
            crystal_seen = true;
            check_block(*block, *dictionary_, crystal_items, *errors_);
        }
    }
    if (blocks_.empty())
        return;
    if (!publication_seen)
        check_block(*blocks_.front(), *dictionary_, publication_items, *errors_);
    if (!crystal_seen)
        check_block(*blocks_.front(), *dictionary_, crystal_items, *errors_);
}
