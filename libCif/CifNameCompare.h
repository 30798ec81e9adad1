#ifndef CIFWARD_CIFNAMECOMPARE_H
#define CIFWARD_CIFNAMECOMPARE_H

#include <cstddef>
#include <string_view>

// Data names compare without regard to case (ASCII letters only: CIF names are ASCII).
inline unsigned char cif_fold(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') ? c + 32 : c;
}

inline bool cif_names_equal(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (cif_fold(a[i]) != cif_fold(b[i]))
            return false;
    return true;
}

inline bool cif_starts_with_nocase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() && cif_names_equal(text.substr(0, prefix.size()), prefix);
}

struct CifNameLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const
    {
        const std::size_t n = a.size() < b.size() ? a.size() : b.size();
        for (std::size_t i = 0; i < n; ++i) {
            const unsigned char x = cif_fold(a[i]), y = cif_fold(b[i]);
            if (x != y)
                return x < y;
        }
        return a.size() < b.size();
    }
};

#endif
