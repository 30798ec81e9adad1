#ifndef CIFWARD_CIFDATAITEM_H
#define CIFWARD_CIFDATAITEM_H

#include "CifCommentable.h"
#include "CifDictionary.h"
#include "CifValueCheck.h"
#include "CifValueList.h"
#include "THandle.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

// A data name and its values: one value for a single item, one a row for a looped item.
// Values are kept as text exactly as read; a value that fails its check is stored all the same.
class CifDataItem : public CifCommentable {
public:
    // With an arena, the values are moved into it once read (settle), and a long single value is
    // put there at once.
    CifDataItem(const std::string& name, const HCifDictionary& dictionary, CifArena* arena = nullptr);
    ~CifDataItem() override;
    CifDataItem(const CifDataItem&) = delete;
    CifDataItem& operator=(const CifDataItem&) = delete;

    const std::string& name() const { return *name_; }
    std::size_t value_count() const { return values_.size(); }
    bool has_value() const { return !values_.empty(); }
    std::string first_value() const;
    bool is_looped() const { return looped_; }
    // The source line of the data name whose value the reader stored; -1 for an item that was
    // not read.
    std::int32_t line() const { return line_; }
    void set_line(std::int32_t line) { line_ = line; }
    void set_looped() { looped_ = true; }

    int set_single_value(const std::string& text);
    void add_value(const std::string& text);
    int set_value(std::size_t row, std::string_view text)
    {
        // A loop being read appends value after value to columns that no dictionary checks.
        if (looped_ && row == values_.size() && unchecked()) {
            values_.push_back(text);
            return 0;
        }
        return set_value_checked(row, text);
    }
    void copy_value(const CifDataItem& other);
    std::string value(std::size_t row) const;
    std::string_view value_view(std::size_t row) const;
    void remove_value(std::size_t row);
    void clear_values() { values_.clear(); }
    // The reader's way to give a column its values once a loop has been read: those at first,
    // first + stride, ... of a loop's values, which lie end to end in `chars` with `ends` saying
    // where each ends; `count` of them, in place of any value the item held. In the item's arena
    // if it has one.
    void take_column(const char* chars, const std::uint32_t* ends, std::size_t first, std::size_t stride,
                     std::size_t count)
    {
        values_.assign_column(arena_, chars, ends, first, stride, count);
    }
    // Whether a dictionary checks the item's values.
    bool values_checked() const;

    int check(const std::string& text);
    CifValueCheckKind check_kind() const { return check_; }

    const std::string& category() const;
    int type() const;
    int type_conditions() const;
    const CifDictionary::Pairs& enumeration() const;
    const std::string& enumeration_range() const;
    const HCifDictionary& dictionary() const { return dictionary_; }

    void write(std::ostream& stream, unsigned line_limit) const;

private:
    void guard(const char* action, std::size_t row) const;
    int set_value_checked(std::size_t row, std::string_view text);
    // Whether no check applies to the values, known without asking the dictionary again.
    bool unchecked() const
    {
        const CifDictionary* dictionary = dictionary_.get();
        return dictionary && entry_revision_ == dictionary->revision() &&
               (check_ == CifValueCheckKind::None || (check_ == CifValueCheckKind::Standard && !entry_));
    }
    void store(std::size_t row, std::string_view text);
    const CifDictionaryEntry* entry() const;

    // In an order that leaves no holes: a file holds many items, most of them of one value.
    // The name as first typed: the arena's copy, shared by the items of that name in every block
    // of a document, or one of the item's own.
    const std::string* name_;
    CifValueList values_;
    HCifDictionary dictionary_;
    // The arena the item lies in, kept alive by the item's count.
    CifArena* arena_;

    // The dictionary's entry for this name, asked once per revision of the dictionary rather
    // than once per value.
    mutable std::uint64_t entry_revision_ = UINT64_MAX;
    mutable const CifDictionaryEntry* entry_ = nullptr;
    mutable CifValueRange range_; // parsed again when the entry changes
    CifValueCheckKind check_;
    std::int32_t line_ = -1;
    bool looped_ = false;
    bool owns_name_;
};

using HCifDataItem = THandle<CifDataItem>;

#endif
