#include "MoietyFormula.h"

#include "Molecule.h"
#include "Site.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <set>

namespace {

constexpr double close = 0.01;
// Atoms given on a special position are rarely exact to more than three decimals.
constexpr double special_position = 1e-3;

std::string number_text(double v)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", v);
    std::string s = text;
    s.erase(s.find_last_not_of('0') + 1);
    if (!s.empty() && s.back() == '.')
        s.pop_back();
    return s;
}

double atoms_of(const MoietyFormula::Part& p, bool with_hydrogen)
{
    double n = 0;
    for (const auto& [symbol, count] : p.elements)
        if (with_hydrogen || (symbol != "H" && symbol != "D"))
            n += count;
    return n;
}

bool same_elements(const std::map<std::string, double>& a, const std::map<std::string, double>& b)
{
    if (a.size() != b.size())
        return false;
    for (const auto& [symbol, count] : a) {
        const auto other = b.find(symbol);
        if (other == b.end() || std::fabs(other->second - count) > close)
            return false;
    }
    return true;
}

std::string trim(const std::string& s)
{
    const std::size_t first = s.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return "";
    return s.substr(first, s.find_last_not_of(" \t\r\n") - first + 1);
}

// Adds the elements of one token such as "C12", "Cl", or "C6H6"; false for anything else.
bool add_token(const std::string& token, std::map<std::string, double>& elements)
{
    std::size_t i = 0;
    std::map<std::string, double> found;
    while (i < token.size()) {
        if (!std::isupper(static_cast<unsigned char>(token[i])))
            return false;
        std::string symbol(1, token[i++]);
        if (i < token.size() && std::islower(static_cast<unsigned char>(token[i])))
            symbol += token[i++];
        const std::size_t digits = i;
        while (i < token.size() && (std::isdigit(static_cast<unsigned char>(token[i])) || token[i] == '.'))
            ++i;
        found[symbol] += digits == i ? 1.0 : std::atof(token.substr(digits, i - digits).c_str());
    }
    for (const auto& [symbol, count] : found)
        elements[symbol] += count;
    return !found.empty();
}

bool is_charge(const std::string& token)
{
    return !token.empty() && token.find_first_not_of("0123456789.+-") == std::string::npos &&
           token.find_first_of("+-") != std::string::npos;
}

// Occupancies sum the parts of a disordered molecule to whole atoms, or, for a molecule that half
// fills its site, to half of them. Gives how much of the molecule is there and scales the counts
// to one whole molecule; counts that come out whole in no simple way are taken by the fullest
// occupancy.
double whole_molecules(std::map<std::string, double>& elements, double fullest)
{
    for (double there : {1.0, 0.5, 1.0 / 3, 0.25, 2.0 / 3, 0.75, 1.0 / 6, 0.125}) {
        const bool whole = std::all_of(elements.begin(), elements.end(), [there](const auto& e) {
            const double n = e.second / there;
            return std::fabs(n - std::round(n)) < 0.05;
        });
        if (whole) {
            for (auto& e : elements)
                e.second = std::round(e.second / there);
            return there;
        }
    }
    for (auto& e : elements)
        e.second = std::round(e.second / fullest * 100) / 100;
    return fullest;
}

} // namespace

std::string MoietyFormula::Part::formula() const
{
    std::vector<std::string> order;
    const bool carbon = elements.count("C") != 0;
    if (carbon) {
        order.push_back("C");
        for (const char* h : {"H", "D"})
            if (elements.count(h))
                order.push_back(h);
    }
    for (const auto& [symbol, count] : elements)
        if (std::find(order.begin(), order.end(), symbol) == order.end())
            order.push_back(symbol);
    std::string text;
    for (const std::string& symbol : order) {
        const double n = elements.at(symbol);
        text += (text.empty() ? "" : " ") + symbol + (std::fabs(n - 1) < 1e-9 ? "" : number_text(n));
    }
    return text;
}

MoietyFormula MoietyFormula::computed(const CrystalMaker& maker)
{
    MoietyFormula out;
    const double nops = std::max(maker.nsymmops(), 1);
    for (int m = 0; m < maker.nmolecules(); ++m) {
        const Molecule& molecule = *maker.molecule(m);
        if (molecule.natoms() == 0)
            continue;
        // Each atom of the asymmetric unit counts by the share of it the unit holds: less than a
        // whole one on a special position.
        std::map<int32_t, double> share;
        std::map<int32_t, std::string> symbol_of;
        std::map<int32_t, double> occupancy_of;
        double fullest = 0;
        for (int i = 0; i < molecule.natoms(); ++i) {
            const HAtom a = molecule.atom(i);
            symbol_of[a->symmtag()] = a->element().symbol();
            const double occupancy = a->has_site() ? a->site()->sof : 1.0;
            occupancy_of[a->symmtag()] = occupancy;
            fullest = std::max(fullest, occupancy);
            if (a->has_site() && !share.count(a->symmtag()) && maker.nsymmops() > 0)
                share[a->symmtag()] = maker.site_multiplicity(a->site()->frac, special_position) / nops;
            share.emplace(a->symmtag(), 1.0);
        }
        if (!(fullest > 0))
            continue;
        Part part;
        if (maker.polymeric(m)) {
            // One repeat of the polymer, in whole atoms: the least of its shares counts 1.
            for (const auto& [tag, s] : share)
                part.elements[symbol_of[tag]] += s * occupancy_of[tag] / fullest;
            part.count = fullest;
            double least = 1e300;
            for (const auto& e : part.elements)
                least = std::min(least, e.second);
            double scale = 1;
            for (double k = 1; k <= 24; ++k) {
                scale = k;
                if (std::all_of(part.elements.begin(), part.elements.end(), [k, least](const auto& e) {
                        const double n = e.second / least * k;
                        return std::fabs(n - std::round(n)) < close;
                    }))
                    break;
            }
            for (auto& e : part.elements)
                e.second = std::round(e.second / least * scale * 100) / 100;
            part.count *= least / scale;
        } else {
            double held = 0;
            for (const auto& tag_share : share)
                held += tag_share.second;
            // Alternative positions of a disordered part count by their occupancies.
            for (int i = 0; i < molecule.natoms(); ++i)
                part.elements[molecule.atom(i)->element().symbol()] +=
                    occupancy_of[molecule.atom(i)->symmtag()];
            part.count = held / molecule.natoms() * whole_molecules(part.elements, fullest);
        }
        out.parts_.push_back(part);
    }
    out.normalise();
    return out;
}

namespace {

// Reads elements, charges and bracketed groups with their multipliers ("(C H5 N)6",
// "(C4 H4 Cu N2)n") up to a closing bracket or the end; false for anything else.
bool parse_group(const std::string& text, std::size_t& pos, std::map<std::string, double>& elements)
{
    while (pos < text.size()) {
        const char c = text[pos];
        if (c == ' ') {
            ++pos;
        } else if (c == ')') {
            return true;
        } else if (c == '(') {
            std::map<std::string, double> inner;
            ++pos;
            if (!parse_group(text, pos, inner) || pos >= text.size())
                return false;
            ++pos;
            const std::size_t digits = pos;
            while (pos < text.size() &&
                   (std::isdigit(static_cast<unsigned char>(text[pos])) || text[pos] == '.'))
                ++pos;
            const double times = digits == pos ? 1.0 : std::atof(text.substr(digits, pos - digits).c_str());
            if (pos < text.size() && text[pos] == 'n')
                ++pos;
            for (const auto& [symbol, count] : inner)
                elements[symbol] += count * times;
        } else {
            const std::size_t end = std::min(text.find_first_of(" ()", pos), text.size());
            std::string token = text.substr(pos, end - pos);
            // A charge written onto the symbol: "I-", "Na+".
            if (!is_charge(token))
                while (!token.empty() && (token.back() == '+' || token.back() == '-'))
                    token.pop_back();
            if (!is_charge(token) && !add_token(token, elements))
                return false;
            pos = end;
        }
    }
    return true;
}

} // namespace

MoietyFormula MoietyFormula::parse(const std::string& text)
{
    MoietyFormula out;
    std::vector<std::string> fragments;
    int depth = 0;
    std::string current;
    for (char c : text) {
        if (c == '(')
            ++depth;
        if (c == ')')
            --depth;
        if ((c == ',' || c == ';') && depth == 0) {
            fragments.push_back(current);
            current.clear();
        } else {
            current += (c == '\n' || c == '\r' || c == '\t') ? ' ' : c;
        }
    }
    fragments.push_back(current);
    for (std::string fragment : fragments) {
        fragment = trim(fragment);
        if (fragment.empty())
            continue;
        Part part;
        // A leading count: "2(H2 O)", "0.5(C6 H6)", "3H2 O", "2 Cl-".
        std::size_t digits = 0;
        while (digits < fragment.size() &&
               (std::isdigit(static_cast<unsigned char>(fragment[digits])) || fragment[digits] == '.'))
            ++digits;
        if (digits > 0 && digits < fragment.size()) {
            const std::size_t next = fragment[digits] == ' ' ? digits + 1 : digits;
            if (next < fragment.size() &&
                (fragment[next] == '(' || std::isupper(static_cast<unsigned char>(fragment[next])))) {
                part.count = std::atof(fragment.substr(0, digits).c_str());
                fragment = fragment.substr(next);
            }
        }
        std::size_t pos = 0;
        if (!parse_group(fragment, pos, part.elements) || pos != fragment.size() || part.elements.empty() ||
            !(part.count > 0))
            return MoietyFormula();
        out.parts_.push_back(part);
    }
    out.normalise();
    return out;
}

void MoietyFormula::normalise()
{
    std::vector<Part> merged;
    for (const Part& p : parts_) {
        const auto same = std::find_if(merged.begin(), merged.end(),
                                       [&p](const Part& m) { return same_elements(m.elements, p.elements); });
        if (same == merged.end())
            merged.push_back(p);
        else
            same->count += p.count;
    }
    std::stable_sort(merged.begin(), merged.end(), [](const Part& a, const Part& b) {
        const double heavy_a = atoms_of(a, false), heavy_b = atoms_of(b, false);
        if (std::fabs(heavy_a - heavy_b) > 1e-9)
            return heavy_a > heavy_b;
        return atoms_of(a, true) > atoms_of(b, true);
    });
    if (!merged.empty()) {
        const double reference = merged.front().count;
        for (Part& p : merged)
            p.count /= reference;
    }
    parts_ = merged;
}

std::string MoietyFormula::text() const
{
    std::string out;
    for (const Part& p : parts_) {
        if (!out.empty())
            out += ", ";
        out += std::fabs(p.count - 1) < 1e-6 ? p.formula() : number_text(p.count) + "(" + p.formula() + ")";
    }
    return out;
}

MoietyFormula MoietyFormula::reduced() const
{
    MoietyFormula out;
    for (Part p : parts_) {
        long long divisor = 0;
        bool whole = true;
        for (const auto& e : p.elements) {
            whole = whole && std::fabs(e.second - std::round(e.second)) < 1e-6;
            divisor = std::gcd(divisor, std::llround(e.second));
        }
        if (whole && divisor > 1) {
            for (auto& e : p.elements)
                e.second /= static_cast<double>(divisor);
            p.count *= static_cast<double>(divisor);
        }
        out.parts_.push_back(p);
    }
    out.normalise();
    return out;
}

MoietyFormula::Agreement MoietyFormula::compare(const MoietyFormula& given) const
{
    // "C2 H4 O2" twice is "C4 H8 O4" once: the parts are compared in lowest terms.
    const MoietyFormula mine = reduced(), theirs = given.reduced();
    if (mine.parts_.empty() || theirs.parts_.empty())
        return Differs;
    if (mine.parts_.size() == theirs.parts_.size() &&
        std::all_of(mine.parts_.begin(), mine.parts_.end(), [&theirs](const Part& p) {
            return std::any_of(theirs.parts_.begin(), theirs.parts_.end(), [&p](const Part& o) {
                return same_elements(p.elements, o.elements) && std::fabs(p.count - o.count) <= close;
            });
        }))
        return Agrees;
    // A file may give its moieties together as one formula: then only the proportions of the
    // elements can agree.
    if (theirs.parts_.size() < mine.parts_.size()) {
        const std::map<std::string, double> a = mine.proportions(), b = theirs.proportions();
        if (a.size() == b.size() && std::all_of(a.begin(), a.end(), [&b](const auto& e) {
                const auto other = b.find(e.first);
                return other != b.end() && std::fabs(other->second - e.second) < 0.002;
            }))
            return AgreesInSum;
    }
    return Differs;
}

std::map<std::string, double> MoietyFormula::proportions() const
{
    std::map<std::string, double> sum;
    double total = 0;
    for (const Part& p : parts_)
        for (const auto& [symbol, count] : p.elements) {
            sum[symbol] += count * p.count;
            total += count * p.count;
        }
    for (auto& e : sum)
        e.second /= total;
    return sum;
}
