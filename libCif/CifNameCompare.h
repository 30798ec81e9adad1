#ifndef CIFWARD_CIFNAMECOMPARE_H
#define CIFWARD_CIFNAMECOMPARE_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Data names compare without regard to case (ASCII letters only: CIF names are ASCII).
inline unsigned char cif_fold(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') ? c + 32 : c;
}

// Names that differ mostly share a long prefix, often in the same case: equal stretches are
// passed over eight bytes at a time, and only bytes that differ are folded.
inline std::size_t cif_same_bytes(const char* a, const char* b, std::size_t n)
{
    std::size_t i = 0;
    while (i + 8 <= n) {
        std::uint64_t x, y;
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        if (x != y)
            break;
        i += 8;
    }
    while (i < n && a[i] == b[i])
        ++i;
    return i;
}

inline bool cif_names_equal(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    const std::size_t n = a.size();
    for (std::size_t i = cif_same_bytes(a.data(), b.data(), n); i < n; ++i)
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
        std::size_t i = 0;
        while ((i += cif_same_bytes(a.data() + i, b.data() + i, n - i)) < n) {
            const unsigned char x = cif_fold(a[i]), y = cif_fold(b[i]);
            if (x != y)
                return x < y;
            ++i;
        }
        return a.size() < b.size();
    }
};

#endif
