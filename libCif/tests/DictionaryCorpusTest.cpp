// Every file of the shared corpus, read with the core dictionary, one test instance a file: our
// value findings (324 to 329, 344) are compared with what `gemmi validate -d cif_core.dic` says
// of the same file. Every disagreement must be one of the known differences below, each with
// the rule that causes it; each difference is also shown on a small file of its own, so that a
// row that stops being true fails too.
//
// gemmi writes "FILE:LINE in data_BLOCK: MESSAGE", LINE being that of the data name of a single
// item and of "loop_" for a loop, where MESSAGE begins with "NAME: " and names only the first
// value it refuses. A syntax error, a repeated block or a repeated data name ends its checking.
// So the comparison is made per data item: gemmi accepted every value before the one it names
// (or every value, when it names none), and values after it are not compared.

#include "CifNameCompare.h"
#include "CifTestSupport.h"
#include "CifTokeniser.h"
#include "CifValueCheck.h"

#include <cstdlib>
#include <optional>
#include <regex>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const fs::path corpus_dir = fs::path(CIFWARD_SHARED_DIR) / "corpus";
const fs::path core_path = fs::path(CIFWARD_SHARED_DIR) / "dict" / "cif_core.dic";

// ---- The known differences, each with a small file that shows it

// A known difference is named by its label.
using Reason = std::string;

struct KnownDifference {
    const char* label;
    bool refused_by_us;  // else refused by gemmi
    const char* example; // a file in which this difference, and no other, shows
};

const std::vector<KnownDifference> known_differences = {
    // gemmi validates nothing in a file it cannot parse to the end, or that repeats a block or a
    // data name; we check every value as it is read.
    {"gemmi-stopped", true, "data_a\n_cell_length_a -1\n_cell_length_a 2\n"},
    // gemmi also checks _list ("must be a list", "in list"): no value check, and we make none.
    {"list-rule", false, "data_a\n_atom_site_label C1\n"},
    // gemmi finds a data name only in the dictionary's own case, and leaves the others unchecked.
    {"name-case", true, "data_a\n_CELL_LENGTH_A -1\n"},
    // We compare with the enumeration without regard to case; gemmi minds case.
    {"enumeration-case", false, "data_a\n_symmetry_cell_setting Monoclinic\n"},
    // Any string of the letters S, G, R, D, T, U, P is a flag for us; gemmi takes only those
    // the dictionary enumerates, and passes "?", which our flags check refuses.
    {"flags-letters", false, "data_a\nloop_\n_atom_site_label\n_atom_site_refinement_flags\nC1 PD\n"},
    {"flags-unknown", true, "data_a\nloop_\n_atom_site_label\n_atom_site_refinement_flags\nC1 ?\n"},
    // We judge the weighting scheme by its first word, and refuse one under four characters, "?"
    // and "." too; gemmi compares the whole text with the enumeration, and passes those two.
    {"scheme-first-word", false, "data_a\n_refine_ls_weighting_scheme 'calc w=1/[\\s^2^(Fo^2^)]'\n"},
    {"scheme-short", true, "data_a\n_refine_ls_weighting_scheme ?\n"},
    // With esd a value may lie three uncertainties beyond the range for us; gemmi ignores
    // uncertainties, also where the dictionary does not allow one (329 with us).
    {"three-uncertainties", false, "data_a\n_cell_length_a -0.03(5)\n"},
    {"uncertainty-not-allowed", true, "data_a\n_cell_formula_units_Z 4(1)\n"},
    // We compare with the range in 32-bit floats, gemmi in double precision.
    {"single-precision", false, "data_a\n_diffrn_measured_fraction_theta_max 1.00000001\n"},
    // gemmi refuses a number in quotes or a text field, and the Fortran exponent letter D.
    {"quoted-number", false, "data_a\n_cell_length_a '5.0'\n"},
    {"d-exponent", false, "data_a\n_cell_length_a 1.5D1\n"},
    // gemmi accepts an empty uncertainty "()" and reads "+-" before a number as a sign.
    {"empty-uncertainty", true, "data_a\n_cell_length_a 1.5()\n"},
    {"plus-minus", true, "data_a\n_diffrn_standards_decay_% +-0.3\n"},
    // An empty value passes our check, and a single item keeps no value; gemmi compares it with
    // the enumeration.
    {"empty-value", false, "data_a\n_symmetry_cell_setting ''\n"},
};

// ---- Our side

// The core dictionary, read once for all files; it must read without findings.
const HCifConcreteDictionary& core_dictionary()
{
    static const HCifConcreteDictionary core = [] { return dictionary_from(read_bytes(core_path)); }();
    return core;
}

// The dictionary's names exactly as it writes them: gemmi finds only these.
const std::set<std::string>& exact_names()
{
    static const std::set<std::string> names = [] {
        std::set<std::string> out;
        core_dictionary()->each_name(
            [&](const std::string& name, const CifDictionaryEntry&) { out.insert(name); });
        return out;
    }();
    return names;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// A value as gemmi prints it, without its quotes or text-field semicolons.
std::string unwritten(const std::string& raw)
{
    std::string v = raw;
    if (v.size() >= 2 && (v.front() == '\'' || v.front() == '"') && v.back() == v.front())
        v = v.substr(1, v.size() - 2);
    else if (!v.empty() && v.front() == ';')
        v = v.substr(1, v.size() - (v.size() > 1 && v.back() == ';' ? 2 : 1));
    return trimmed(v);
}

std::string name_key(std::string name)
{
    for (char& c : name)
        c = static_cast<char>(cif_fold(static_cast<unsigned char>(c)));
    return name;
}

bool is_written_as_string(const std::string& raw)
{
    return !raw.empty() && (raw.front() == '\'' || raw.front() == '"' || raw.front() == ';');
}

enum class GemmiKind { Number, Range, Enumeration, ListRule };
const char* const kind_texts[] = {"expected number", "out of range", "not allowed", "list rule"};

struct ItemCheck {
    std::string block, name; // as our block keeps them
    bool looped;
    std::vector<std::pair<std::string, int>> rows;        // each value with the result of its check
    std::vector<std::pair<GemmiKind, std::string>> gemmi; // gemmi's refusals, the value as it prints it
};

// Reads a file into `cif`, and judges every value of every item again through a fresh item of the
// same name, so that each refusal is known with its row.
std::vector<ItemCheck> read_checked(const fs::path& path, Cif& cif)
{
    std::ifstream in(path, std::ios::binary);
    cif.read(in);
    std::vector<ItemCheck> items;
    for (const HCifDataBlock& block : cif)
        for (const HCifDataItem& item : *block) {
            items.push_back({block->name(), item->name(), item->is_looped(), {}, {}});
            CifDataItem fresh(item->name(), cif.dictionary());
            for (std::size_t row = 0; row < item->value_count(); ++row)
                items.back().rows.emplace_back(item->value(row), fresh.check(item->value(row)));
        }
    return items;
}

// ---- The rules that explain a difference

bool in_range_as(double x, const std::string& range, bool single)
{
    const std::size_t colon = range.find(':');
    if (colon == std::string::npos)
        return true;
    const std::string low = range.substr(0, colon), high = range.substr(colon + 1);
    auto read = [single](const std::string& t) {
        return single ? static_cast<double>(std::strtof(t.c_str(), nullptr))
                      : std::strtod(t.c_str(), nullptr);
    };
    if (!trimmed(low).empty() && x < read(low))
        return false;
    if (!trimmed(high).empty() && x > read(high))
        return false;
    return true;
}

// Why gemmi refuses a value that we accept.
std::optional<Reason> why_gemmi_refuses(const ItemCheck& item, GemmiKind kind, const std::string& raw)
{
    const std::string text = unwritten(raw);
    const CifDictionaryEntry* e = core_dictionary()->entry(item.name);
    const CifValueCheckKind check = cif_value_check_kind(item.name);
    if (kind == GemmiKind::ListRule)
        return "list-rule";
    if (text.empty())
        return "empty-value";
    switch (kind) {
    case GemmiKind::Number:
        if (is_written_as_string(raw))
            return "quoted-number";
        if (text.find_first_of("dD") != std::string::npos && cif_is_well_formed_number(text))
            return "d-exponent";
        break;
    case GemmiKind::Enumeration:
        if (check == CifValueCheckKind::Flags)
            return "flags-letters";
        if (check == CifValueCheckKind::FirstWord && text.find(' ') != std::string::npos)
            return "scheme-first-word";
        if (e) {
            bool exact = false, folded = false;
            for (const auto& allowed : e->enumeration) {
                exact = exact || allowed.first == text;
                folded = folded || cif_names_equal(allowed.first, text);
            }
            if (folded && !exact)
                return "enumeration-case";
        }
        break;
    case GemmiKind::Range:
        if (e && e->type_conditions == CifDictionaryEntry::Esd && text.find('(') != std::string::npos)
            return "three-uncertainties";
        if (e && text.find('(') == std::string::npos) {
            const double wide = std::strtod(text.c_str(), nullptr);
            const double narrow = static_cast<double>(std::strtof(text.c_str(), nullptr));
            if (!in_range_as(wide, e->enumeration_range, false) &&
                in_range_as(narrow, e->enumeration_range, true))
                return "single-precision";
        }
        break;
    case GemmiKind::ListRule:
        break;
    }
    return std::nullopt;
}

// Why gemmi accepts a value that we refuse.
std::optional<Reason> why_gemmi_accepts(const ItemCheck& item, const std::pair<std::string, int>& row)
{
    const CifValueCheckKind check = cif_value_check_kind(item.name);
    if (exact_names().count(item.name) == 0)
        return "name-case";
    if (row.second == 6)
        return "uncertainty-not-allowed";
    if (check == CifValueCheckKind::Flags && row.first == "?")
        return "flags-unknown";
    if (check == CifValueCheckKind::FirstWord && (row.first == "?" || row.first == "."))
        return "scheme-short";
    if (row.second == 2 && row.first.find("()") != std::string::npos)
        return "empty-uncertainty";
    if ((row.second == 2 || row.second == 3) && row.first.rfind("+-", 0) == 0)
        return "plus-minus";
    return std::nullopt;
}

bool same_fault(GemmiKind kind, int result)
{
    return (kind == GemmiKind::Number && (result == 2 || result == 3)) ||
           (kind == GemmiKind::Range && (result == 4 || result == 5)) ||
           (kind == GemmiKind::Enumeration && result == 1);
}

// ---- The comparison

struct Comparison {
    std::vector<std::string> unexplained;
    std::map<Reason, int> met;
    std::string gemmi_output;
};

ItemCheck* find_item(std::vector<ItemCheck>& items, const std::string& block, const std::string& name)
{
    for (ItemCheck& item : items)
        if (cif_names_equal(item.block, block) && cif_names_equal(item.name, name))
            return &item;
    return nullptr;
}

// The data names written on a line, in order, as the reader sees them.
std::vector<std::string> names_on_line(const std::string& line)
{
    std::istringstream in(line);
    CifTokeniser tokens(in, 2048, HCifErrorList(new CifErrorList));
    std::vector<std::string> out;
    for (CifToken t = tokens.next(); t.kind != CifEnd; t = tokens.next())
        if (t.kind == CifName)
            out.push_back(t.text);
    return out;
}

Comparison compare_with_gemmi(const fs::path& path, std::vector<ItemCheck> items)
{
    Comparison out;
    bool succeeded = false;
    out.gemmi_output = output_of("gemmi validate -q -d " + shell_quoted(core_path.string()) + " " +
                                     shell_quoted(path.string()) + " 2>&1",
                                 succeeded);
    // Messages start with the path; other lines continue the message before.
    std::vector<std::string> messages, lines;
    std::istringstream output(out.gemmi_output), file(read_bytes(path));
    for (std::string line; std::getline(output, line);) {
        if (line.rfind(path.string() + ":", 0) == 0)
            messages.push_back(line.substr(path.string().size() + 1));
        else if (line.rfind("Note: ", 0) != 0 && !messages.empty())
            messages.back() += "\n" + line;
    }
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);

    // Each message is tied to an item of ours. A syntax error ("LINE:COLUMN: ..."), a repeated
    // block or a repeated data name means that gemmi validated nothing.
    static const std::regex message("(\\d+) in (data_.*?): ([\\s\\S]*)"),
        list_rule("(_\\S+) (must be a list|in list)");
    const std::string number = "expected number, got: ", range = "value out of expected range: ",
                      allowed = " is not one of the allowed values:";
    std::vector<std::smatch> parsed(messages.size());
    for (std::size_t i = 0; i < messages.size(); ++i)
        if (!std::regex_match(messages[i], parsed[i], message) ||
            parsed[i][3].str().rfind("duplicate tag ", 0) == 0) {
            for (const ItemCheck& item : items)
                for (const auto& row : item.rows)
                    if (row.second != 0)
                        ++out.met["gemmi-stopped"];
            return out;
        }
    for (const std::smatch& m : parsed) {
        std::smatch match;
        const int at = std::stoi(m[1]);
        const std::string block = m[2], body = m[3];
        std::string name, rest = body;
        GemmiKind kind;
        if (std::regex_match(rest, match, list_rule)) {
            name = match[1];
            kind = GemmiKind::ListRule;
            rest = match[2];
        } else {
            const std::size_t colon = rest.find(": ");
            if (rest.rfind("_", 0) == 0 && colon != std::string::npos) {
                const ItemCheck* looped = find_item(items, block, rest.substr(0, colon));
                if (looped && looped->looped) {
                    name = rest.substr(0, colon);
                    rest = rest.substr(colon + 2);
                }
            }
            if (rest.rfind(number, 0) == 0) {
                kind = GemmiKind::Number;
                rest = rest.substr(number.size());
            } else if (rest.rfind(range, 0) == 0) {
                kind = GemmiKind::Range;
                rest = rest.substr(range.size());
            } else if (rest.find(allowed) != std::string::npos) {
                kind = GemmiKind::Enumeration;
                rest = rest.substr(0, rest.find(allowed));
            } else {
                out.unexplained.push_back("gemmi message not understood: " + body);
                continue;
            }
        }
        // A single item: its data name is on the message's line; of several there, the one whose
        // value gemmi quotes.
        for (const std::string& candidate : name.empty() && at >= 1 && at <= static_cast<int>(lines.size())
                                                ? names_on_line(lines[at - 1])
                                                : std::vector<std::string>()) {
            const ItemCheck* item = find_item(items, block, candidate);
            if (item && !item->looped &&
                (name.empty() || (item->rows.empty() ? "" : trimmed(item->rows[0].first)) == unwritten(rest)))
                name = candidate;
        }
        ItemCheck* item = name.empty() ? nullptr : find_item(items, block, name);
        if (!item) {
            out.unexplained.push_back("no item of ours for gemmi's line " + std::to_string(at) + ": " + body);
            continue;
        }
        item->gemmi.emplace_back(kind, rest);
    }
    const auto explain = [&](std::optional<Reason> reason, const std::string& what) {
        if (reason)
            ++out.met[*reason];
        else
            out.unexplained.push_back(what);
    };
    for (const ItemCheck& item : items) {
        const std::string where = item.block + " " + item.name;
        std::optional<std::pair<GemmiKind, std::string>> refusal;
        for (const auto& each : item.gemmi) {
            if (each.first == GemmiKind::ListRule)
                explain(why_gemmi_refuses(item, each.first, each.second), where + ": " + each.second);
            else if (refusal)
                out.unexplained.push_back(where + ": gemmi refused two values of one item");
            else
                refusal = each;
        }
        std::size_t accepted_rows = item.rows.size(); // rows that gemmi accepted
        if (refusal) {
            std::size_t row = 0;
            while (row < item.rows.size() && trimmed(item.rows[row].first) != unwritten(refusal->second))
                ++row;
            if (row < item.rows.size()) {
                accepted_rows = row;
                const int result = item.rows[row].second;
                const std::string what =
                    where + " row " + std::to_string(row) + " '" + item.rows[row].first + "': gemmi " +
                    kind_texts[static_cast<int>(refusal->first)] + ", ours " +
                    (result ? std::to_string(cif_check_result_code(result)) : "accepted");
                if (result == 0)
                    explain(why_gemmi_refuses(item, refusal->first, refusal->second), what);
                else if (!same_fault(refusal->first, result))
                    out.unexplained.push_back(what);
            } else if (item.rows.empty() && unwritten(refusal->second).empty()) {
                ++out.met["empty-value"];
            } else {
                out.unexplained.push_back(where + ": gemmi's value " + refusal->second + " is none of ours");
                continue;
            }
        }
        for (std::size_t r = 0; r < accepted_rows; ++r)
            if (item.rows[r].second != 0)
                explain(why_gemmi_accepts(item, item.rows[r]),
                        where + " row " + std::to_string(r) + " '" + item.rows[r].first + "': ours " +
                            std::to_string(cif_check_result_code(item.rows[r].second)) + ", gemmi accepted");
    }
    return out;
}

class DictionaryCorpusFile : public testing::TestWithParam<std::string> {};

TEST_P(DictionaryCorpusFile, ValueFindingsAgreeWithGemmiOrDifferByAKnownRule)
{
    if (GetParam().empty() || !fs::exists(core_path))
        GTEST_SKIP() << "corpus or core dictionary not found: set CIFWARD_SHARED_DIR";
    Cif cif(pool_of(core_dictionary()));
    const std::vector<ItemCheck> items = read_checked(corpus_dir / GetParam(), cif);

    // The reader's findings are exactly the refusals of the item checks, each named after its
    // item, unless a repeated item (318) kept a value it never checked.
    std::multiset<std::string> checked, found;
    bool repeated = false;
    for (const ItemCheck& item : items)
        for (const auto& row : item.rows)
            if (row.second != 0)
                checked.insert(std::to_string(cif_check_result_code(row.second)) + " " + name_key(item.name));
    for (const CifError& e : *cif.errors()) {
        repeated = repeated || e.code == 318;
        if ((e.code >= 324 && e.code <= 329) || e.code == 344)
            found.insert(std::to_string(e.code) + " " + name_key(e.first));
    }
    EXPECT_TRUE(repeated || found == checked)
        << "the reader's value findings are not those of the item checks";

    if (!gemmi_available())
        GTEST_SKIP() << "gemmi not found: nothing to compare with";
    const Comparison comparison = compare_with_gemmi(corpus_dir / GetParam(), items);
    EXPECT_EQ(comparison.unexplained, std::vector<std::string>())
        << "differences from gemmi that no known rule explains; gemmi said:\n"
        << comparison.gemmi_output;
}

INSTANTIATE_TEST_SUITE_P(DictionaryCorpus, DictionaryCorpusFile,
                         testing::ValuesIn(cif_files_under(corpus_dir)),
                         [](const testing::TestParamInfo<std::string>& info) {
                             return corpus_test_name(corpus_dir, info.param);
                         });

// Each row of the table is true: its example file shows that difference and no other, and the
// side that refuses is the one the table names.
TEST(DictionaryCorpusKnownDifferences, EachShowsOnItsExample)
{
    if (!fs::exists(core_path) || !gemmi_available())
        GTEST_SKIP() << "no core dictionary, or no gemmi to compare with";
    const fs::path dir =
        fs::temp_directory_path() / ("cifward-known-differences-" + std::to_string(getpid()));
    fs::create_directories(dir);
    for (const KnownDifference& k : known_differences) {
        SCOPED_TRACE(k.label);
        const fs::path file = dir / (std::string(k.label) + ".cif");
        std::ofstream(file, std::ios::binary) << k.example;
        Cif cif(pool_of(core_dictionary()));
        const Comparison comparison = compare_with_gemmi(file, read_checked(file, cif));
        EXPECT_EQ(comparison.unexplained, std::vector<std::string>()) << comparison.gemmi_output;
        ASSERT_EQ(comparison.met.size(), 1u) << comparison.gemmi_output;
        EXPECT_EQ(comparison.met.begin()->first, k.label);
        EXPECT_EQ(
            std::any_of(cif.errors()->begin(), cif.errors()->end(),
                        [](const CifError& e) { return (e.code >= 324 && e.code <= 329) || e.code == 344; }),
            k.refused_by_us);
    }
    fs::remove_all(dir);
}

} // namespace
