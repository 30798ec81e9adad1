// Reading a DDL1 dictionary file into a CifConcreteDictionary.
#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDictionaryText.h"

#include <set>

namespace {

// A header value, normalised as definition texts are (the history is a text field).
std::string header_value(const CifDataBlock& block, const char* name)
{
    return cif_normalise_text(block.first_value(name));
}

// A single-valued field: the first value, normalised; more than one value is a finding.
std::string single(const CifDataBlock& block, const char* name, const HCifErrorList& errors)
{
    HCifDataItem item = block.item(name);
    if (!item || !item->has_value())
        return std::string();
    if (item->value_count() > 1)
        errors->add(CifError(334, block.line()));
    return cif_normalise_text(item->value_view(0));
}

std::vector<std::string> all_values(const CifDataBlock& block, const char* name)
{
    std::vector<std::string> out;
    HCifDataItem item = block.item(name);
    if (item)
        for (std::size_t i = 0; i < item->value_count(); ++i)
            out.push_back(cif_normalise_text(item->value_view(i)));
    return out;
}

// The first of `words` that occurs in `value`, ignoring case, gives its code; -1 if none does.
int enumerated(const std::string& value, std::initializer_list<std::pair<const char*, int>> words)
{
    std::string folded;
    for (char c : value)
        folded += static_cast<char>(cif_fold(static_cast<unsigned char>(c)));
    for (const auto& word : words)
        if (folded.find(word.first) != std::string::npos)
            return word.second;
    return -1;
}

int related_function(const std::string& value)
{
    return enumerated(value, {{"alternate", CifDictionaryEntry::Alternate},
                              {"convention", CifDictionaryEntry::Convention},
                              {"conversion", CifDictionaryEntry::Conversion},
                              {"replace", CifDictionaryEntry::Replace}});
}

// The value and detail pairs of `first` and `detail`: one pair for a single item, one a row for
// a loop of the two, nothing (with a finding) for a loop of anything else.
bool pairs(const CifDataBlock& block, const char* first, const char* detail, const HCifErrorList& errors,
           std::vector<std::pair<std::string, std::string>>& out)
{
    HCifDataItem item = block.item(first);
    if (!item || !item->has_value())
        return true;
    if (!item->is_looped()) {
        out.emplace_back(cif_normalise_text(item->value_view(0)),
                         cif_normalise_text(block.first_value(detail)));
        return true;
    }
    std::vector<std::string> columns;
    block.loop_names(first, columns);
    if (columns.size() > 2) {
        errors->add(CifError(333, block.line()));
        return false;
    }
    HCifDataItem second;
    for (const std::string& column : columns) {
        if (cif_names_equal(column, first))
            continue;
        if (!cif_names_equal(column, detail)) {
            errors->add(CifError(337, column, detail, block.line()));
            return false;
        }
        second = block.item(column);
    }
    for (std::size_t row = 0; row < item->value_count(); ++row)
        out.emplace_back(cif_normalise_text(item->value_view(row)),
                         second ? cif_normalise_text(second->value_view(row)) : std::string());
    return true;
}

} // namespace

void CifConcreteDictionary::read_definition(const CifDataBlock& block, const HCifErrorList& errors,
                                            std::vector<std::pair<Strings, CifDictionaryEntry>>& out) const
{
    Strings names = all_values(block, "_name");
    if (names.empty()) {
        errors->add(CifError(331, block.line()));
        return;
    }
    CifDictionaryEntry e;
    e.category = single(block, "_category", errors);
    e.definition = single(block, "_definition", errors);
    e.enumeration_default = single(block, "_enumeration_default", errors);
    e.enumeration_range = single(block, "_enumeration_range", errors);
    e.list_link_parent = single(block, "_list_link_parent", errors);
    e.list_uniqueness = single(block, "_list_uniqueness", errors);
    e.type_construct = single(block, "_type_construct", errors);
    e.units = single(block, "_units", errors);
    e.units_detail = single(block, "_units_detail", errors);
    e.list_link_child = all_values(block, "_list_link_child");
    e.list_reference = all_values(block, "_list_reference");

    if (block.has_value("_list_mandatory")) {
        const std::string value = single(block, "_list_mandatory", errors);
        if (value.find_first_not_of(" \t\n\r\v\f") != std::string::npos) {
            const int code = enumerated(value, {{"no", 0}, {"yes", 1}});
            if (code < 0)
                errors->add(CifError(338, value, block.line()));
            else
                e.list_mandatory = code == 1;
        }
    }
    if (block.has_value("_list")) {
        const std::string value = single(block, "_list", errors);
        const int code = enumerated(value, {{"no", CifDictionaryEntry::ListNo},
                                            {"both", CifDictionaryEntry::ListBoth},
                                            {"yes", CifDictionaryEntry::ListYes}});
        if (code < 0)
            errors->add(CifError(341, value, block.line()));
        else
            e.list = code;
    }
    if (block.has_value("_type")) {
        const std::string value = single(block, "_type", errors);
        const int code = enumerated(value, {{"numb", CifDictionaryEntry::Numb},
                                            {"char", CifDictionaryEntry::Char},
                                            {"null", CifDictionaryEntry::Null}});
        if (code < 0)
            errors->add(CifError(339, value, block.line()));
        else
            e.type = code;
    }
    if (block.has_value("_type_conditions")) {
        const std::string value = single(block, "_type_conditions", errors);
        int code = enumerated(value, {{"none", CifDictionaryEntry::NoConditions},
                                      {"esd", CifDictionaryEntry::Esd},
                                      {"seq", CifDictionaryEntry::Seq}});
        // "su" (standard uncertainty) is the later DDL1 spelling of "esd", used by the current
        // core dictionary.
        if (code < 0 && cif_names_equal(value, "su"))
            code = CifDictionaryEntry::Esd;
        if (code < 0)
            errors->add(CifError(340, value, block.line()));
        else
            e.type_conditions = code;
    }

    pairs(block, "_enumeration", "_enumeration_detail", errors, e.enumeration);
    pairs(block, "_example", "_example_detail", errors, e.example);
    std::vector<std::pair<std::string, std::string>> related;
    pairs(block, "_related_item", "_related_function", errors, related);
    for (const auto& pair : related) {
        const int function = related_function(pair.second);
        if (function < 0)
            errors->add(CifError(342, pair.second, block.line()));
        else
            e.related.emplace_back(pair.first, function);
    }
    out.emplace_back(std::move(names), std::move(e));
}

void CifConcreteDictionary::read(std::istream& stream, const HCifErrorList& errors)
{
    clear();
    const std::size_t before = errors->count();
    if (!stream.good()) {
        errors->add(CifError(301, -1));
        return;
    }
    // Every name of a dictionary file is unknown to the empty dictionary it is read with, so each
    // would raise 320; that finding means nothing here.
    HCifDictionary none(new CifConcreteDictionary);
    Cif file(none);
    file.errors()->suppress(320);
    file.read(stream, 80);
    for (const CifError& finding : *file.errors())
        errors->add(finding);
    if (file.block_count() == 0 || errors->count() != before)
        return;

    std::size_t first_definition = 0;
    const CifDataBlock& head = file.block(0);
    const bool is_header = head.has_value("_dictionary_name") || head.has_value("_dictionary_history") ||
                           head.has_value("_dictionary_update") || head.has_value("_dictionary_version");
    if (is_header) {
        header_.name = header_value(head, "_dictionary_name");
        header_.history = header_value(head, "_dictionary_history");
        header_.update = header_value(head, "_dictionary_update");
        header_.version = header_value(head, "_dictionary_version");
        first_definition = 1;
    }

    std::vector<std::pair<Strings, CifDictionaryEntry>> definitions;
    for (std::size_t i = first_definition; i < file.block_count(); ++i)
        read_definition(file.block(i), errors, definitions);

    std::set<std::string, CifNameLess> seen;
    for (auto& definition : definitions) {
        Strings kept;
        for (const std::string& name : definition.first) {
            if (seen.insert(name).second)
                kept.push_back(name);
            else
                errors->add(CifError(332, name, -1));
        }
        if (!kept.empty())
            add_entry(kept, definition.second);
    }
}
