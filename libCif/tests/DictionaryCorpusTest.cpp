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

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifDictionaryPool.h"
#include "CifNameCompare.h"
#include "CifTestSupport.h"
#include "CifValueCheck.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path shared_dir = fs::path(CIFWARD_SHARED_DIR);
const fs::path corpus_dir = shared_dir / "corpus";
const fs::path core_path = shared_dir / "dict" / "cif_core.dic";

// ---------------------------------------------------------------------------------------------
// The known differences, each with a small file that shows it

enum class Reason {
    GemmiStopped,
    GemmiListRule,
    GemmiCaseSensitiveNames,
    EnumerationIgnoresCase,
    FlagsAnyLetters,
    FlagsRefuseUnknown,
    WeightingSchemeFirstWord,
    WeightingSchemeShort,
    UncertaintyWithinThree,
    UncertaintyNotAllowed,
    SinglePrecision,
    QuotedNumber,
    FortranExponent,
    EmptyUncertainty,
    PlusMinusSign,
    EmptyValue
};

struct KnownDifference {
    Reason reason;
    const char* label;
    bool refused_by_us;  // else refused by gemmi
    const char* example; // a file in which this difference, and no other, shows
};

const std::vector<KnownDifference> known_differences = {
    // gemmi validates nothing in a file it cannot parse to the end, or that repeats a block or a
    // data name; we check every value as it is read.
    {Reason::GemmiStopped, "gemmi-stopped", true, "data_a\n_cell_length_a -1\n_cell_length_a 2\n"},
    // gemmi also checks _list ("must be a list", "in list"): no value check, and we make none.
    {Reason::GemmiListRule, "list-rule", false, "data_a\n_atom_site_label C1\n"},
    // gemmi finds a data name only in the dictionary's own case, and leaves the others unchecked.
    {Reason::GemmiCaseSensitiveNames, "name-case", true, "data_a\n_CELL_LENGTH_A -1\n"},
    // We compare with the enumeration without regard to case; gemmi minds case.
    {Reason::EnumerationIgnoresCase, "enumeration-case", false,
     "data_a\n_symmetry_cell_setting Monoclinic\n"},
    // Any string of the letters S, G, R, D, T, U, P is a flag for us; gemmi takes only those
    // the dictionary enumerates, and passes "?", which our flags check refuses.
    {Reason::FlagsAnyLetters, "flags-letters", false,
     "data_a\nloop_\n_atom_site_label\n_atom_site_refinement_flags\nC1 PD\n"},
    {Reason::FlagsRefuseUnknown, "flags-unknown", true,
     "data_a\nloop_\n_atom_site_label\n_atom_site_refinement_flags\nC1 ?\n"},
    // We judge the weighting scheme by its first word, and refuse one under four characters, "?"
    // and "." too; gemmi compares the whole text with the enumeration, and passes those two.
    {Reason::WeightingSchemeFirstWord, "scheme-first-word", false,
     "data_a\n_refine_ls_weighting_scheme 'calc w=1/[\\s^2^(Fo^2^)]'\n"},
    {Reason::WeightingSchemeShort, "scheme-short", true, "data_a\n_refine_ls_weighting_scheme ?\n"},
    // With esd a value may lie three uncertainties beyond the range for us; gemmi ignores
    // uncertainties, also where the dictionary does not allow one (329 with us).
    {Reason::UncertaintyWithinThree, "three-uncertainties", false, "data_a\n_cell_length_a -0.03(5)\n"},
    {Reason::UncertaintyNotAllowed, "uncertainty-not-allowed", true, "data_a\n_cell_formula_units_Z 4(1)\n"},
    // We compare with the range in 32-bit floats, gemmi in double precision.
    {Reason::SinglePrecision, "single-precision", false,
     "data_a\n_diffrn_measured_fraction_theta_max 1.00000001\n"},
    // gemmi refuses a number in quotes or a text field, and the Fortran exponent letter D.
    {Reason::QuotedNumber, "quoted-number", false, "data_a\n_cell_length_a '5.0'\n"},
    {Reason::FortranExponent, "d-exponent", false, "data_a\n_cell_length_a 1.5D1\n"},
    // gemmi accepts an empty uncertainty "()" and reads "+-" before a number as a sign.
    {Reason::EmptyUncertainty, "empty-uncertainty", true, "data_a\n_cell_length_a 1.5()\n"},
    {Reason::PlusMinusSign, "plus-minus", true, "data_a\n_diffrn_standards_decay_% +-0.3\n"},
    // An empty value passes our check, and a single item keeps no value; gemmi compares it with
    // the enumeration.
    {Reason::EmptyValue, "empty-value", false, "data_a\n_symmetry_cell_setting ''\n"},
};

const char* label_of(Reason reason)
{
    for (const KnownDifference& k : known_differences)
        if (k.reason == reason)
            return k.label;
    return "a reason without a row";
}

// ---------------------------------------------------------------------------------------------
// The files and the dictionary

// The core dictionary, read once for all files, and the findings of its reading.
const HCifConcreteDictionary& core_dictionary(std::string& problem)
{
    static const HCifErrorList errors(new CifErrorList);
    static const HCifConcreteDictionary core = [] {
        HCifConcreteDictionary d(new CifConcreteDictionary);
        std::ifstream in(core_path);
        d->read(in, errors);
        return d;
    }();
    problem = findings(*errors);
    return core;
}

// The dictionary's names exactly as it writes them: gemmi finds only these.
const std::set<std::string>& exact_names()
{
    static const std::set<std::string> names = [] {
        std::string problem;
        std::set<std::string> out;
        core_dictionary(problem)->each_name(
            [&](const std::string& name, const CifDictionaryEntry&) { out.insert(name); });
        return out;
    }();
    return names;
}

// What a shell command prints, and whether it succeeded.
std::string output_of(const std::string& command, bool& succeeded)
{
    std::string out;
    FILE* pipe = popen(command.c_str(), "r");
    succeeded = pipe != nullptr;
    if (!pipe)
        return out;
    char buffer[4096];
    while (fgets(buffer, sizeof buffer, pipe))
        out += buffer;
    succeeded = pclose(pipe) == 0;
    return out;
}

bool gemmi_available()
{
    static const bool available = [] {
        bool succeeded = false;
        const std::string out = output_of("gemmi --version 2>/dev/null", succeeded);
        return succeeded && out.find("gemmi") != std::string::npos;
    }();
    return available;
}

std::string shell_quoted(const std::string& text)
{
    std::string out = "'";
    for (char c : text)
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return std::string();
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// A value as gemmi prints it, without its quotes or text-field semicolons.
std::string unwritten(const std::string& raw)
{
    std::string v = raw;
    if (v.size() >= 2 && (v.front() == '\'' || v.front() == '"') && v.back() == v.front()) {
        v = v.substr(1, v.size() - 2);
    } else if (!v.empty() && v.front() == ';') {
        v.erase(0, 1);
        if (!v.empty() && v.back() == ';')
            v.pop_back();
    }
    return trimmed(v);
}

bool is_written_as_string(const std::string& raw)
{
    return !raw.empty() && (raw.front() == '\'' || raw.front() == '"' || raw.front() == ';');
}

std::vector<std::string> file_lines(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::vector<std::string> out;
    std::string line;
    while (std::getline(in, line))
        out.push_back(line);
    return out;
}

// The data names written on a line, in order, outside quotes and comments.
std::vector<std::string> names_on_line(const std::string& line)
{
    std::vector<std::string> out;
    bool in_quote = false;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (in_quote) {
            if (c == quote && (i + 1 == line.size() || std::isspace(static_cast<unsigned char>(line[i + 1]))))
                in_quote = false;
            continue;
        }
        if (i > 0 && !std::isspace(static_cast<unsigned char>(line[i - 1])))
            continue;
        if (c == '#')
            break;
        if (c == '\'' || c == '"') {
            in_quote = true;
            quote = c;
        } else if (c == '_') {
            std::size_t end = i;
            while (end < line.size() && !std::isspace(static_cast<unsigned char>(line[end])))
                ++end;
            out.push_back(line.substr(i, end - i));
        }
    }
    return out;
}

// ---------------------------------------------------------------------------------------------
// Our side

enum class GemmiKind { Number, Range, Enumeration, ListRule };

// One refusal by gemmi, tied to an item of our reading.
struct GemmiRefusal {
    GemmiKind kind;
    std::string raw; // the value as gemmi prints it
};

struct Row {
    std::string value;
    int result = 0;
};

struct ItemCheck {
    std::string block;
    std::string name; // as our block keeps it
    CifValueCheckKind kind = CifValueCheckKind::Standard;
    const CifDictionaryEntry* entry = nullptr;
    bool looped = false;
    std::vector<Row> rows;
    std::vector<GemmiRefusal> gemmi;
};

struct Reading {
    HCifDictionaryPool pool{new CifDictionaryPool};
    std::unique_ptr<Cif> cif;
    std::vector<ItemCheck> items;
    std::string thrown;
};

// Reads a file with the core dictionary, and judges every value of every item again through a
// fresh item of the same name, so that each refusal is known with its row.
void read_with_core(const fs::path& path, Reading& reading)
{
    std::string problem;
    reading.pool->add(core_dictionary(problem));
    reading.cif = std::make_unique<Cif>(reading.pool);
    std::ifstream in(path, std::ios::binary);
    try {
        reading.cif->read(in);
    } catch (const std::exception& e) {
        reading.thrown = e.what();
        return;
    }
    for (const HCifDataBlock& block : *reading.cif) {
        for (const HCifDataItem& item : *block) {
            ItemCheck check{block->name(),
                            item->name(),
                            item->check_kind(),
                            reading.pool->find_entry(item->name()),
                            item->is_looped(),
                            {},
                            {}};
            CifDataItem fresh(item->name(), reading.pool);
            for (std::size_t row = 0; row < item->value_count(); ++row)
                check.rows.push_back({item->value(row), fresh.check(item->value(row))});
            reading.items.push_back(check);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// gemmi's side

struct GemmiMessage {
    int line = 0;
    std::string block; // with its "data_", as our blocks are named
    std::string body;  // the message after "in data_BLOCK: "
};

struct GemmiReport {
    std::string stopped; // why gemmi validated nothing, if it did not
    std::vector<GemmiMessage> messages;
    std::string output;
};

GemmiReport run_gemmi(const fs::path& file)
{
    GemmiReport report;
    const std::string path = file.string();
    const std::string command =
        "gemmi validate -q -d " + shell_quoted(core_path.string()) + " " + shell_quoted(path) + " 2>&1";
    bool succeeded = false;
    report.output = output_of(command, succeeded);

    // Messages start with the path; other lines continue the message before.
    std::vector<std::string> starts;
    std::istringstream lines(report.output);
    std::string line;
    const std::string prefix = path + ":";
    while (std::getline(lines, line)) {
        if (line.rfind(prefix, 0) == 0)
            starts.push_back(line.substr(prefix.size()));
        else if (line.rfind("Note: ", 0) != 0 && !starts.empty())
            starts.back() += "\n" + line;
    }
    const std::string marker = " in data_";
    for (const std::string& start : starts) {
        std::size_t digits = 0;
        while (digits < start.size() && std::isdigit(static_cast<unsigned char>(start[digits])))
            ++digits;
        if (digits == 0 || start.compare(digits, 1, ":") == 0) {
            report.stopped = trimmed(start); // a repeated block, or LINE:COLUMN: a syntax error
            continue;
        }
        const std::size_t block_end = start.find(": ", digits);
        if (start.compare(digits, marker.size(), marker) != 0 || block_end == std::string::npos) {
            report.stopped = "output not understood: " + start;
            continue;
        }
        GemmiMessage m;
        m.line = std::atoi(start.substr(0, digits).c_str());
        m.block = "data_" + start.substr(digits + marker.size(), block_end - digits - marker.size());
        m.body = start.substr(block_end + 2);
        if (m.body.rfind("duplicate tag ", 0) == 0)
            report.stopped = m.body;
        else
            report.messages.push_back(m);
    }
    return report;
}

// ---------------------------------------------------------------------------------------------
// The rules that explain a difference

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
std::optional<Reason> why_gemmi_refuses(const ItemCheck& item, const GemmiRefusal& refusal)
{
    const std::string text = unwritten(refusal.raw);
    const CifDictionaryEntry* e = item.entry;
    if (refusal.kind == GemmiKind::ListRule)
        return Reason::GemmiListRule;
    if (text.empty())
        return Reason::EmptyValue;
    switch (refusal.kind) {
    case GemmiKind::Number:
        if (is_written_as_string(refusal.raw))
            return Reason::QuotedNumber;
        if (text.find_first_of("dD") != std::string::npos && cif_is_well_formed_number(text))
            return Reason::FortranExponent;
        break;
    case GemmiKind::Enumeration:
        if (item.kind == CifValueCheckKind::Flags)
            return Reason::FlagsAnyLetters;
        if (item.kind == CifValueCheckKind::FirstWord && text.find(' ') != std::string::npos)
            return Reason::WeightingSchemeFirstWord;
        if (e) {
            bool exact = false, folded = false;
            for (const auto& allowed : e->enumeration) {
                exact = exact || allowed.first == text;
                folded = folded || cif_names_equal(allowed.first, text);
            }
            if (folded && !exact)
                return Reason::EnumerationIgnoresCase;
        }
        break;
    case GemmiKind::Range:
        if (e && e->type_conditions == CifDictionaryEntry::Esd && text.find('(') != std::string::npos)
            return Reason::UncertaintyWithinThree;
        if (e && text.find('(') == std::string::npos) {
            const double wide = std::strtod(text.c_str(), nullptr);
            const double narrow = static_cast<double>(std::strtof(text.c_str(), nullptr));
            if (!in_range_as(wide, e->enumeration_range, false) &&
                in_range_as(narrow, e->enumeration_range, true))
                return Reason::SinglePrecision;
        }
        break;
    case GemmiKind::ListRule:
        break;
    }
    return std::nullopt;
}

// Why gemmi accepts a value that we refuse.
std::optional<Reason> why_gemmi_accepts(const ItemCheck& item, const Row& row)
{
    if (exact_names().count(item.name) == 0)
        return Reason::GemmiCaseSensitiveNames;
    if (row.result == 6)
        return Reason::UncertaintyNotAllowed;
    if (item.kind == CifValueCheckKind::Flags && row.value == "?")
        return Reason::FlagsRefuseUnknown;
    if (item.kind == CifValueCheckKind::FirstWord && (row.value == "?" || row.value == "."))
        return Reason::WeightingSchemeShort;
    if (row.result == 2 && row.value.find("()") != std::string::npos)
        return Reason::EmptyUncertainty;
    if ((row.result == 2 || row.result == 3) && row.value.rfind("+-", 0) == 0)
        return Reason::PlusMinusSign;
    return std::nullopt;
}

bool same_fault(GemmiKind kind, int result)
{
    return (kind == GemmiKind::Number && (result == 2 || result == 3)) ||
           (kind == GemmiKind::Range && (result == 4 || result == 5)) ||
           (kind == GemmiKind::Enumeration && result == 1);
}

const char* kind_text(GemmiKind kind)
{
    switch (kind) {
    case GemmiKind::Number:
        return "expected number";
    case GemmiKind::Range:
        return "out of range";
    case GemmiKind::Enumeration:
        return "not allowed";
    case GemmiKind::ListRule:
        return "list rule";
    }
    return "?";
}

// ---------------------------------------------------------------------------------------------
// The comparison

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

// Ties each of gemmi's messages to an item of ours, or says why it cannot.
void attach_gemmi_messages(const GemmiReport& gemmi, const fs::path& path, std::vector<ItemCheck>& items,
                           std::vector<std::string>& unexplained)
{
    const std::vector<std::string> lines = file_lines(path);
    const std::regex list_rule("(_\\S+) (must be a list|in list)");
    const std::string number = "expected number, got: ", range = "value out of expected range: ",
                      allowed = " is not one of the allowed values:";
    for (const GemmiMessage& m : gemmi.messages) {
        std::string name, rest = m.body;
        GemmiKind kind;
        std::smatch match;
        if (std::regex_match(rest, match, list_rule)) {
            name = match[1];
            kind = GemmiKind::ListRule;
            rest = match[2];
        } else {
            const std::size_t colon = rest.find(": ");
            if (rest.rfind("_", 0) == 0 && colon != std::string::npos) {
                const std::string column = rest.substr(0, colon);
                const ItemCheck* looped = find_item(items, m.block, column);
                if (looped && looped->looped) {
                    name = column;
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
                unexplained.push_back("gemmi message not understood: " + m.body);
                continue;
            }
        }
        if (name.empty()) {
            // A single item: its data name is on the message's line; of several there, the one
            // whose value gemmi quotes.
            std::vector<std::string> candidates;
            if (m.line >= 1 && m.line <= static_cast<int>(lines.size()))
                for (const std::string& candidate : names_on_line(lines[m.line - 1])) {
                    const ItemCheck* item = find_item(items, m.block, candidate);
                    if (!item || item->looped)
                        continue;
                    const std::string value =
                        item->rows.empty() ? std::string() : trimmed(item->rows[0].value);
                    if (candidates.empty() || value == unwritten(rest))
                        candidates.push_back(candidate);
                }
            if (candidates.empty()) {
                unexplained.push_back("no item of ours on gemmi's line " + std::to_string(m.line) + ": " +
                                      m.body);
                continue;
            }
            name = candidates.back();
        }
        ItemCheck* item = find_item(items, m.block, name);
        if (!item) {
            unexplained.push_back("no item " + name + " in " + m.block + " for gemmi's " + m.body);
            continue;
        }
        item->gemmi.push_back({kind, rest});
    }
}

Comparison compare_with_gemmi(const fs::path& path, std::vector<ItemCheck> items)
{
    Comparison out;
    const GemmiReport gemmi = run_gemmi(path);
    out.gemmi_output = gemmi.output;
    auto explain = [&](std::optional<Reason> reason, const std::string& what) {
        if (reason)
            ++out.met[*reason];
        else
            out.unexplained.push_back(what);
    };

    if (!gemmi.stopped.empty()) {
        for (const ItemCheck& item : items)
            for (const Row& row : item.rows)
                if (row.result != 0)
                    ++out.met[Reason::GemmiStopped];
        return out;
    }
    attach_gemmi_messages(gemmi, path, items, out.unexplained);

    for (const ItemCheck& item : items) {
        const std::string where = item.block + " " + item.name;
        std::optional<GemmiRefusal> refusal;
        for (const GemmiRefusal& each : item.gemmi) {
            if (each.kind == GemmiKind::ListRule)
                explain(why_gemmi_refuses(item, each), where + ": " + each.raw);
            else if (refusal)
                out.unexplained.push_back(where + ": gemmi refused two values of one item");
            else
                refusal = each;
        }

        std::size_t accepted_rows = item.rows.size(); // rows that gemmi accepted
        if (refusal) {
            const std::optional<std::size_t> row = [&]() -> std::optional<std::size_t> {
                for (std::size_t r = 0; r < item.rows.size(); ++r)
                    if (trimmed(item.rows[r].value) == unwritten(refusal->raw))
                        return r;
                return std::nullopt;
            }();
            if (row) {
                accepted_rows = *row;
                const int result = item.rows[*row].result;
                const std::string what =
                    where + " row " + std::to_string(*row) + " '" + item.rows[*row].value + "': gemmi " +
                    kind_text(refusal->kind) + ", ours " +
                    (result ? std::to_string(cif_check_result_code(result)) : "accepted");
                if (result == 0)
                    explain(why_gemmi_refuses(item, *refusal), what);
                else if (!same_fault(refusal->kind, result))
                    out.unexplained.push_back(what);
            } else if (item.rows.empty() && unwritten(refusal->raw).empty()) {
                ++out.met[Reason::EmptyValue];
            } else {
                out.unexplained.push_back(where + ": gemmi's value " + refusal->raw + " is none of ours");
                continue;
            }
        }
        for (std::size_t r = 0; r < accepted_rows; ++r) {
            const Row& row = item.rows[r];
            if (row.result != 0)
                explain(why_gemmi_accepts(item, row),
                        where + " row " + std::to_string(r) + " '" + row.value + "': ours " +
                            std::to_string(cif_check_result_code(row.result)) + ", gemmi accepted");
        }
    }
    return out;
}

std::string listed(const std::vector<std::string>& lines)
{
    std::string out;
    for (const std::string& line : lines)
        out += "  " + line + "\n";
    return out;
}

// ---------------------------------------------------------------------------------------------

class DictionaryCorpusFile : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        if (GetParam().empty())
            GTEST_SKIP() << "corpus directory " << corpus_dir << " not found: set CIFWARD_SHARED_DIR";
        if (!fs::exists(core_path))
            GTEST_SKIP() << core_path << " not found";
        std::string problem;
        core_dictionary(problem);
        ASSERT_EQ(problem, "") << "the core dictionary did not load";
        path_ = corpus_dir / GetParam();
    }
    fs::path path_;
};

TEST_P(DictionaryCorpusFile, ValueFindingsAgreeWithGemmiOrDifferByAKnownRule)
{
    Reading reading;
    read_with_core(path_, reading);
    ASSERT_EQ(reading.thrown, "") << "the read threw";

    // The reader's findings are exactly the refusals of the item checks, each named after its
    // item, unless a repeated item (318) kept a value it never checked.
    std::multiset<std::string> checked, found;
    bool repeated = false;
    for (const ItemCheck& item : reading.items)
        for (const Row& row : item.rows)
            if (row.result != 0)
                checked.insert(std::to_string(cif_check_result_code(row.result)) + " " + lower(item.name));
    for (const CifError& e : *reading.cif->errors()) {
        repeated = repeated || e.code == 318;
        if ((e.code >= 324 && e.code <= 329) || e.code == 344)
            found.insert(std::to_string(e.code) + " " + lower(e.first));
    }
    if (!repeated) {
        EXPECT_EQ(found, checked) << "the reader's value findings are not those of the item checks";
    }

    if (!gemmi_available())
        GTEST_SKIP() << "gemmi not found: nothing to compare with";
    const Comparison comparison = compare_with_gemmi(path_, reading.items);
    EXPECT_TRUE(comparison.unexplained.empty()) << "differences from gemmi that no known rule explains:\n"
                                                << listed(comparison.unexplained) << "gemmi said:\n"
                                                << comparison.gemmi_output;
}

INSTANTIATE_TEST_SUITE_P(DictionaryCorpus, DictionaryCorpusFile,
                         testing::ValuesIn(cif_files_under(corpus_dir)),
                         [](const testing::TestParamInfo<std::string>& info) {
                             return corpus_test_name(corpus_dir, info.param);
                         });

// Each row of the table is true: its example file shows that difference and no other.
TEST(DictionaryCorpusKnownDifferences, EachShowsOnItsExample)
{
    if (!fs::exists(core_path))
        GTEST_SKIP() << core_path << " not found";
    if (!gemmi_available())
        GTEST_SKIP() << "gemmi not found: nothing to compare with";
    const fs::path dir =
        fs::temp_directory_path() / ("cifward-known-differences-" + std::to_string(getpid()));
    fs::create_directories(dir);
    for (const KnownDifference& k : known_differences) {
        SCOPED_TRACE(k.label);
        const fs::path file = dir / (std::string(k.label) + ".cif");
        {
            std::ofstream out(file, std::ios::binary);
            out << k.example;
        }
        Reading reading;
        read_with_core(file, reading);
        const Comparison comparison = compare_with_gemmi(file, reading.items);
        EXPECT_EQ(comparison.unexplained, std::vector<std::string>()) << comparison.gemmi_output;
        ASSERT_EQ(comparison.met.size(), 1u) << comparison.gemmi_output;
        EXPECT_TRUE(comparison.met.begin()->first == k.reason)
            << "met: " << label_of(comparison.met.begin()->first);
        // Who refuses is as the table says.
        bool ours = false;
        for (const CifError& e : *reading.cif->errors())
            ours = ours || (e.code >= 324 && e.code <= 329) || e.code == 344;
        EXPECT_EQ(ours, k.refused_by_us);
    }
    std::error_code ec;
    fs::remove_all(dir, ec);
}

} // namespace
