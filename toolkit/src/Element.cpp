#include "Element.h"

#include "ElementTables.h"
#include "MoleculeError.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstring>
#include <istream>
#include <ostream>
#include <vector>

namespace {

std::array<double, Element::count>& vdw_radii()
{
    static std::array<double, Element::count> radii = [] {
        std::array<double, Element::count> r{};
        std::copy(std::begin(ElementTables::vdw_radii), std::end(ElementTables::vdw_radii), r.begin());
        return r;
    }();
    return radii;
}

// Filled for the lower code first only, as every lookup orders the pair.
const std::array<std::array<double, Element::count>, Element::count>& bond_distances()
{
    static const auto table = [] {
        std::array<std::array<double, Element::count>, Element::count> t{};
        for (int i = 0; i < Element::count; ++i)
            for (int j = i; j < Element::count; ++j) {
                const double ri = ElementTables::bond_radii[i], rj = ElementTables::bond_radii[j];
                t[i][j] = (ri == 0.0 || rj == 0.0) ? 0.0 : ri + rj + 0.45;
            }
        return t;
    }();
    return table;
}

char upper(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

} // namespace

Element::Element(int code)
{
    if (code < 0 || code >= count)
        throw molecule_error("Element::Element: Illegal element code.");
    code_ = static_cast<int8_t>(code);
}

Element::Element(const std::string& symbol)
{
    std::string text = symbol;
    if (!text.empty())
        text[0] = upper(text[0]);
    for (int c = 0; c < count; ++c)
        if (text == ElementTables::symbols[c]) {
            code_ = static_cast<int8_t>(c);
            return;
        }
    throw molecule_error("Element::Element: Illegal element name: " + symbol);
}

const char* Element::symbol() const
{
    return ElementTables::symbols[code_];
}

int Element::atomic_number() const
{
    return ElementTables::atomic_numbers[code_];
}

double Element::bond_radius() const
{
    return ElementTables::bond_radii[code_];
}

double Element::vdw_radius() const
{
    return vdw_radii()[code_];
}

double Element::volume() const
{
    return ElementTables::volumes[code_];
}

double Element::atomic_weight() const
{
    return ElementTables::atomic_weights[code_];
}

int Element::periodic_group() const
{
    return ElementTables::periodic_groups[code_];
}

int Element::period() const
{
    return ElementTables::periods[code_];
}

double Element::cromer_mann(int i) const
{
    return ElementTables::cromer_mann[code_][i];
}

double Element::scattering_factor(double stol) const
{
    const double* c = ElementTables::cromer_mann[code_];
    double f = c[8];
    for (int i = 0; i < 4; ++i)
        f += c[2 * i] * std::exp(-c[2 * i + 1] * stol * stol);
    return f;
}

bool Element::is_nonmetal() const
{
    static const char* const nonmetals[] = {"H",  "He", "B",  "C",  "N",  "O",  "F",  "Ne", "Si", "P",  "S",
                                            "Cl", "Ar", "As", "Se", "Br", "Kr", "Te", "I",  "Xe", "At", "Rn"};
    static const std::vector<int> numbers = [] {
        std::vector<int> z;
        for (const char* s : nonmetals)
            z.push_back(Element(std::string(s)).atomic_number());
        return z;
    }();
    return std::find(numbers.begin(), numbers.end(), atomic_number()) != numbers.end();
}

void Element::set_vdw_radius(const Element& element, double radius)
{
    vdw_radii()[element.code_] = radius;
}

double Element::max_bond_distance(const Element& a, const Element& b)
{
    const int lo = std::min(a.code_, b.code_), hi = std::max(a.code_, b.code_);
    return bond_distances()[lo][hi];
}

void Element::read(std::istream& in)
{
    const int code = in.get();
    if (code < 0 || code >= count)
        throw molecule_error("Element::read: Illegal element code.");
    code_ = static_cast<int8_t>(code);
}

void Element::write(std::ostream& out) const
{
    out.put(static_cast<char>(code_));
}

std::ostream& operator<<(std::ostream& out, const Element& e)
{
    return out << e.symbol();
}

bool is_element_symbol(const std::string& text)
{
    if (text.size() != 2)
        return false;
    const char first = upper(text[0]), second = upper(text[1]);
    struct Letters {
        char first;
        const char* seconds;
    };
    static const Letters lists[] = {{'A', "CGLMRST"}, {'B', "AEIKR"},    {'C', "ADEFLMORSU"},
                                    {'H', "EFGO"},    {'L', "AIUW"},     {'M', "DGNO"},
                                    {'N', "ADBEIOP"}, {'P', "ADBMORTU"}, {'R', "ABEHNU"},
                                    {'S', "BCEIMNR"}, {'T', "ABCEHILM"}};
    for (const auto& list : lists)
        if (list.first == first)
            return std::strchr(list.seconds, second) != nullptr;
    for (int c = 1; c < Element::count; ++c) {
        const char* s = ElementTables::symbols[c];
        if (s[0] == first && s[1] != '\0' && s[2] == '\0' && upper(s[1]) == second)
            return true;
    }
    return false;
}
