#ifndef CIFWARD_CIFVALUECHECK_H
#define CIFWARD_CIFVALUECHECK_H

#include <string>

struct CifDictionaryEntry;

// Which check a data item's values go through, chosen once from the item's name.
enum class CifValueCheckKind { Standard, Flags, FirstWord, None };

// The range of an item as parsed from its dictionary text, once per item.
struct CifValueRange {
    float low = 0.0f;
    float high = 0.0f;
    bool parsed = false;
    bool has_low = false;
    bool has_high = false;
};

CifValueCheckKind cif_value_check_kind(const std::string& name);

// 0 accepted, 1 not in the enumeration, 2 not a well-formed number, 3 not a number, 4 below the
// lower limit, 5 above the upper limit, 6 an uncertainty the dictionary does not allow,
// 7 the dictionary's range text cannot be read.
// `entry` is the dictionary's entry for the item's name, null when no dictionary defines it.
int cif_check_value(CifValueCheckKind kind, const CifDictionaryEntry* entry, CifValueRange& range,
                    const std::string& value);

// The standard number form: sign, digits with one optional point, exponent, uncertainty.
bool cif_is_well_formed_number(const std::string& value);

#endif
