#include "CifValueCheck.h"

#include "CifDictionaryEntry.h"
#include "CifNameCompare.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}
bool is_space(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

bool only_space_from(const std::string& v, std::size_t i)
{
    for (; i < v.size(); ++i)
        if (!is_space(v[i]))
            return false;
    return true;
}

// A well-formed number reads the same through strtof as through the scanning formats, at a
// fraction of the cost; only other text goes through sscanf.
bool scan_number(const std::string& text, bool well_formed, float& x)
{
    if (well_formed) {
        x = std::strtof(text.c_str(), nullptr);
        return true;
    }
    return std::sscanf(text.c_str(), "%f", &x) == 1;
}

// A number with an uncertainty, "x(u)", read as the scanning format "%f(%d)" reads it.
bool scan_with_uncertainty(const std::string& text, bool well_formed, float& x, int& u)
{
    if (!well_formed)
        return std::sscanf(text.c_str(), "%f(%d)", &x, &u) == 2;
    char* end = nullptr;
    x = std::strtof(text.c_str(), &end);
    if (*end != '(')
        return false;
    u = static_cast<int>(std::strtol(end + 1, nullptr, 10));
    return true;
}

int standard_check(const CifDictionaryEntry* entry, CifValueRange& range, const std::string& v)
{
    if (v.empty() || entry == nullptr)
        return 0;
    const int type = entry->type;
    if (type == CifDictionaryEntry::UnknownType)
        return 0;
    if (v == "?" || v == ".")
        return 0;

    const auto& enumeration = entry->enumeration;
    if (!enumeration.empty()) {
        for (const auto& allowed : enumeration)
            if (cif_names_equal(allowed.first, v))
                return 0;
        return 1;
    }

    float x = 0.0f;
    int u = 0;
    const bool well_formed = cif_is_well_formed_number(v);
    if (type == CifDictionaryEntry::Numb && !well_formed)
        return scan_number(v, false, x) ? 2 : 3;

    const int conditions = entry->type_conditions;
    const std::string& range_text = entry->enumeration_range;
    if (!range_text.empty()) {
        if (!range.parsed) {
            float low = 0.0f, high = 0.0f;
            if (std::sscanf(range_text.c_str(), "%f:%f", &low, &high) == 2) {
                range.low = low;
                range.high = high;
                range.has_low = range.has_high = true;
            } else if (std::sscanf(range_text.c_str(), "%f:", &low) == 1) {
                range.low = low;
                range.has_low = true;
            } else if (std::sscanf(range_text.c_str(), ":%f", &high) == 1) {
                range.high = high;
                range.has_high = true;
            } else {
                return 7;
            }
            range.parsed = true;
        }

        // Fortran's D exponent reads as E for the comparison.
        std::string copy = v;
        std::string::size_type at = copy.find('D');
        if (at != std::string::npos)
            copy[at] = 'E';
        at = copy.find('d');
        if (at != std::string::npos)
            copy[at] = 'e';

        const bool copy_well_formed = well_formed && cif_is_well_formed_number(copy);
        if (conditions == CifDictionaryEntry::Esd && scan_with_uncertainty(copy, copy_well_formed, x, u)) {
            int decimals = 0;
            at = copy.find('.');
            if (at != std::string::npos)
                for (std::size_t i = at + 1; i < copy.size() && is_digit(copy[i]); ++i)
                    ++decimals;
            int exponent = 0;
            at = copy.find('e');
            if (at == std::string::npos)
                at = copy.find('E');
            if (at != std::string::npos)
                exponent = std::atoi(copy.c_str() + at + 1);
            // The uncertainty counts in units of the value's last digit.
            const float s = static_cast<float>(u) * std::pow(10.0f, static_cast<float>(exponent - decimals));
            if (range.has_low && range.low - 3.0f * s > x)
                return 4;
            if (range.has_high && range.high + 3.0f * s < x)
                return 5;
        } else if (scan_number(copy, copy_well_formed, x)) {
            if (range.has_low && x < range.low)
                return 4;
            if (range.has_high && x > range.high)
                return 5;
        }
    }

    if (type == CifDictionaryEntry::Numb && conditions == CifDictionaryEntry::NoConditions &&
        scan_with_uncertainty(v, well_formed, x, u))
        return 6;
    return 0;
}

int flags_check(const std::string& v)
{
    if (v.empty())
        return 1;
    if (v == ".")
        return 0;
    for (char c : v)
        if (std::strchr("SGRDTUP", c) == nullptr || c == '\0')
            return 1;
    return 0;
}

} // namespace

CifValueCheckKind cif_value_check_kind(const std::string& name)
{
    if (cif_names_equal(name, "_atom_site_refinement_flags"))
        return CifValueCheckKind::Flags;
    if (cif_names_equal(name, "_refine_ls_weighting_scheme"))
        return CifValueCheckKind::FirstWord;
    for (const char* free_text : {"_publ_contact_author_phone", "_publ_contact_author_fax",
                                  "_audit_contact_author_phone", "_audit_contact_author_fax"})
        if (cif_names_equal(name, free_text))
            return CifValueCheckKind::None;
    return CifValueCheckKind::Standard;
}

int cif_check_value(CifValueCheckKind kind, const CifDictionaryEntry* entry, CifValueRange& range,
                    const std::string& value)
{
    switch (kind) {
    case CifValueCheckKind::None:
        return 0;
    case CifValueCheckKind::Flags:
        return flags_check(value);
    case CifValueCheckKind::FirstWord: {
        if (value.size() < 4)
            return 1;
        const std::string::size_type blank = value.find(' ');
        if (blank != std::string::npos)
            return standard_check(entry, range, value.substr(0, blank));
        return standard_check(entry, range, value);
    }
    case CifValueCheckKind::Standard:
        break;
    }
    return standard_check(entry, range, value);
}

bool cif_is_well_formed_number(const std::string& v)
{
    std::size_t i = 0;
    const std::size_t n = v.size();
    if (i < n && (v[i] == '+' || v[i] == '-'))
        ++i;
    bool point = false;
    if (i < n && v[i] == '.') {
        point = true;
        ++i;
    }
    std::size_t digits = 0;
    while (i < n && is_digit(v[i])) {
        ++i;
        ++digits;
    }
    if (!point && i < n && v[i] == '.') {
        ++i;
        while (i < n && is_digit(v[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return false;
    if (only_space_from(v, i))
        return true;

    if (i < n && (v[i] == 'd' || v[i] == 'D' || v[i] == 'e' || v[i] == 'E')) {
        ++i;
        if (i < n && (v[i] == '+' || v[i] == '-'))
            ++i;
        std::size_t exponent_digits = 0;
        while (i < n && is_digit(v[i])) {
            ++i;
            ++exponent_digits;
        }
        if (exponent_digits == 0)
            return false;
    }

    if (i < n && v[i] == '(') {
        ++i;
        std::size_t uncertainty_digits = 0;
        while (i < n && is_digit(v[i])) {
            ++i;
            ++uncertainty_digits;
        }
        if (uncertainty_digits == 0 || i >= n || v[i] != ')')
            return false;
        ++i;
    } else {
        while (i < n && is_digit(v[i]))
            ++i;
    }
    return only_space_from(v, i);
}
