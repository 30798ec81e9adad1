#ifndef CIFWARD_CIFPARSER_H
#define CIFWARD_CIFPARSER_H

#include "Cif.h"
#include "CifNameIndex.h"
#include "CifTokeniser.h"
#include "CifValueList.h"

#include <string>
#include <unordered_map>

// Builds blocks, items and loops from tokens, turning every fault into a finding.
class CifParser {
public:
    CifParser(Cif& cif, CifTokeniser& tokeniser);
    void run();

private:
    void ensure_block(std::int32_t line);
    void start_block(const std::string& name, std::int32_t line);
    void heading(const CifToken& token);
    HCifDataItem name(const CifToken& token);
    // Gives the item of that name afterwards, or null if there is none.
    HCifDataItem set_item(const CifToken& name, const CifToken& value);
    HCifDataItem read_loop(std::int32_t loop_line);
    // Reads rows into the columns (null: values not kept) up to the first token that is no
    // value; false if that token cuts a row short.
    bool read_rows(const std::vector<HCifDataItem>& columns);
    void stray_value(const CifToken& token, const HCifDataItem& last_item, bool& stray_reported);
    bool swallowed_names(const HCifDataItem& item);
    void duplicate(const HCifDataItem& item, const std::string& name, std::int32_t line);
    // Appends comments and blank lines to `out`, and leaves the first other token in `token`.
    void gather_comments(std::string& out, CifToken& token);
    void drop_last_empty_line();
    void add(std::uint32_t code, std::int32_t line) { errors_->add(code, line); }
    void add(std::uint32_t code, std::string_view first, std::int32_t line)
    {
        errors_->add(code, first, line);
    }
    void add(std::uint32_t code, std::string_view first, std::string_view second, std::int32_t line)
    {
        errors_->add(code, first, second, line);
    }

    HCifDictionary dictionary_;
    HCifErrorList errors_;
    Cif::Blocks& blocks_;
    CifArena::Ref arena_;
    CifTokeniser& tokeniser_;
    std::string pending_;
    HCifDataBlock block_;
    bool was_suppressed_ = false;
    std::unordered_map<std::string, int> block_names_;
    const CifDataItem* swallow_checked_ = nullptr;
    bool swallowed_ = false;
    // Tokens read for each item, kept so that their texts keep their room from item to item.
    CifToken value_token_;
    CifToken next_token_;
    // The values of the loop being read, end to end, where each ends, and for each column how
    // many from it on are not checked; kept from loop to loop for their room.
    CifCharBuffer loop_chars_;
    CifArray<std::uint32_t> loop_ends_;
    std::vector<std::size_t> unchecked_run_;
    // A loop header's columns, names and name index, kept from loop to loop so that a file of
    // many loops does not allocate them afresh for each.
    std::vector<HCifDataItem> loop_columns_;
    std::vector<std::string> loop_names_;
    CifNameIndex loop_header_;
};

#endif
