// Runs the engine over every file of the shared corpus: real CIFs written by other programs and
// people, many of them damaged on purpose. Each file is its own test instance, named after it, so
// that a failure says which file broke. CORPUS.md explains where our reading differs from others'.

#include "CifMessageTable.h"
#include "CifNameCompare.h"
#include "CifTestSupport.h"

#include <cstdlib>
#include <iostream>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace {

const fs::path corpus_dir = fs::path(CIFWARD_SHARED_DIR) / "corpus";
const fs::path syntax_dir = corpus_dir / "iucr-ciftest" / "syntax";
const fs::path vcif_dir = corpus_dir / "iucr-ciftest" / "expected-vcif";
const std::string corpus_missing = "corpus not found in " + corpus_dir.string() + ": set CIFWARD_SHARED_DIR";

// Reads `text` into `cif`; gives what() of an exception that escaped the read, if one did.
std::string read_into(Cif& cif, const std::string& text)
{
    std::istringstream in(text);
    try {
        cif.read(in, 80);
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "an exception not derived from std::exception";
    }
    return "";
}

std::string written(const Cif& cif)
{
    std::ostringstream out;
    cif.write(out, 80);
    return out.str();
}

// Whether `cif` has a finding of `code` (at `line` unless it is 0) of a severity `error` says:
// 2 an error, 1 anything less, 0 any.
bool has_finding(const Cif& cif, std::uint32_t code, std::int32_t line = 0, int error = 0)
{
    return std::any_of(cif.errors()->begin(), cif.errors()->end(), [&](const CifError& e) {
        return e.code == code && (line == 0 || e.line == line) &&
               (error == 0 || (e.severity() == 2) == (error == 2));
    });
}

// Each finding is a row of the message table and points at a line of the file: lines as the
// reader counts them, where a CR, an LF or the pair ends a line and the text after the last line
// end is one more line, even when it is empty.
void expect_coherent_findings(const Cif& cif, const std::string& bytes)
{
    std::int32_t lines = 1;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')
            ++i;
        lines += bytes[i] == '\r' || bytes[i] == '\n';
    }
    for (const CifError& e : *cif.errors()) {
        EXPECT_EQ(cif_message(e.code).code, e.code) << "finding outside the message table: " << e.text();
        // Only the stream-level findings and the parser's internal ones have no line.
        if (e.code == 301 || e.code == 302 || e.code == 316) {
            EXPECT_EQ(e.line, -1) << e.text();
        } else {
            EXPECT_TRUE(e.line >= 1 && e.line <= lines)
                << e.text() << " (the file has " << lines << " lines)";
        }
        EXPECT_NE(e.code, 316u) << "the parser met a state it should never reach: " << e.text();
    }
    EXPECT_EQ(cif.block_count() == 0, has_finding(cif, 302))
        << "302 must be raised exactly when no block was read";
}

// What a read left in the model, one entry per fact, in the form the round trip must keep: items
// that have a value (the others are not written), loop columns without regard to case. `pad_loops`:
// a ragged loop (322) is left with a short last row, and the writer fills the missing cells with
// ''; the first reading is padded the same way so that every other value compares exactly.
std::vector<std::string> image_of(const Cif& cif, bool pad_loops)
{
    std::vector<std::string> out;
    const auto add_comments = [&](const std::string& owner, const CifCommentable& c) {
        for (const auto& [position, text] : c.comments())
            out.push_back(owner + " comment " + std::to_string(position) + ": " + text);
    };
    for (const HCifDataBlock& block : cif) {
        out.push_back("block " + block->name());
        add_comments(block->name(), *block);
        std::map<std::string, std::size_t, CifNameLess> rows;
        for (const HCifLoop& loop : block->loops()) {
            std::string names;
            const HCifDataItem first = block->item(loop->names().front());
            for (const std::string& name : loop->names()) {
                rows[name] = first ? first->value_count() : 0;
                for (char c : name)
                    names += static_cast<char>(cif_fold(static_cast<unsigned char>(c)));
                names += " ";
            }
            out.push_back("loop " + names);
            add_comments("loop", *loop);
            for (const std::string& note : loop->notes())
                out.push_back("note: " + note);
        }
        for (const HCifDataItem& item : *block) {
            std::vector<std::string> values;
            for (std::size_t row = 0; row < item->value_count(); ++row)
                values.push_back("value: " + item->value(row));
            const auto r = rows.find(item->name());
            if (pad_loops && item->is_looped() && r != rows.end() && values.size() < r->second)
                values.resize(r->second, "value: ");
            if (values.empty())
                continue;
            out.push_back("item " + item->name());
            out.insert(out.end(), values.begin(), values.end());
            add_comments(item->name(), *item);
        }
    }
    return out;
}

std::map<std::uint32_t, int> error_counts(const Cif& cif)
{
    std::map<std::uint32_t, int> counts;
    for (const CifError& e : *cif.errors())
        counts[e.code] += e.severity() == 2;
    return counts;
}

// What the reader understood, written and read again, is understood the same way, with no new
// errors, and writes as the same text.
void expect_round_trip(const Cif& first)
{
    const std::string text = written(first);
    Cif second(HCifDictionary(new CifConcreteDictionary));
    ASSERT_EQ(read_into(second, text), "") << "reading the written text threw";
    const std::vector<std::string> before = image_of(first, true), after = image_of(second, false);
    const auto [x, y] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    EXPECT_TRUE(x == before.end() && y == after.end())
        << "the model changed; first difference:\n  " << one_line(x == before.end() ? "(end)" : *x) << "\n  "
        << one_line(y == after.end() ? "(end)" : *y);
    const auto counts = error_counts(first);
    for (const auto& [code, count] : error_counts(second)) {
        EXPECT_LE(count, counts.count(code) ? counts.at(code) : 0) << "new errors of code " << code;
    }
    EXPECT_EQ(written(second), text) << "writing the second reading changed the text";
}

// A file that gemmi parses holds no fault of syntax by our reading either, except where our rules
// knowingly differ: those files are listed with the reason.
const std::set<std::uint32_t> syntax_codes = {306, 307, 308, 309, 310, 316, 319,
                                              321, 322, 350, 351, 352, 353};
const std::vector<std::pair<std::string, std::uint32_t>> gemmi_differences = {
    {"iucr-ciftest/syntax/ciftest8.cif", 306}, // gemmi sets no limit to a name, we keep 75 characters
    {"cod/funny-disorder-markups.cif", 310},   // `gemmi validate -f` does not look for repeated block names
};

void expect_no_syntax_error(const Cif& cif, const std::string& file)
{
    const auto listed = [&](std::uint32_t code) {
        return std::count(gemmi_differences.begin(), gemmi_differences.end(), std::make_pair(file, code)) > 0;
    };
    for (const CifError& e : *cif.errors()) {
        EXPECT_TRUE(e.severity() != 2 || !syntax_codes.count(e.code) || listed(e.code))
            << "gemmi accepts the file, we raise " << e.text();
    }
    // A listed difference that no longer happens is taken off the list, not left to hide one.
    for (const auto& [listed_file, code] : gemmi_differences) {
        EXPECT_TRUE(file != listed_file || has_finding(cif, code))
            << "listed difference no longer seen: " << code;
    }
}

// The exit status of `gemmi validate -f`: 0 when gemmi parses the file; -1 without gemmi.
int gemmi_validate(const fs::path& path)
{
    if (!gemmi_available())
        return -1;
    const int status =
        std::system(("gemmi validate -f " + shell_quoted(path.string()) + " >/dev/null 2>&1").c_str());
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class CorpusFile : public testing::TestWithParam<std::string> {};

// One reading per file runs every check. A check that does not apply says why on the output.
TEST_P(CorpusFile, ReadsWritesBackAndAgreesWithGemmi)
{
    if (GetParam().empty())
        GTEST_SKIP() << corpus_missing;
    const fs::path path = corpus_dir / GetParam();
    const std::string bytes = read_bytes(path);
    Cif first(HCifDictionary(new CifConcreteDictionary));
    ASSERT_EQ(read_into(first, bytes), "") << "the read threw";
    expect_coherent_findings(first, bytes);
    // Stray values (311 to 313) are dropped, and what stood around them changes meaning. Repeated
    // names keep their first value and ragged loops are padded: those files make the trip.
    std::uint32_t stray_code = 0;
    for (std::uint32_t code : {311u, 312u, 313u})
        stray_code = stray_code ? stray_code : has_finding(first, code) ? code : 0;
    if (stray_code == 0) {
        SCOPED_TRACE("round trip");
        expect_round_trip(first);
    } else {
        std::cout << "[   NOTE   ] no round trip: the file has stray values (finding " << stray_code << ")\n";
    }
    const int gemmi = gemmi_validate(path);
    if (gemmi != 0) {
        std::cout << "[   NOTE   ] " << (gemmi == -1 ? "gemmi is not on PATH" : "gemmi rejects the file")
                  << ": no comparison\n";
    } else {
        SCOPED_TRACE("agreement with gemmi");
        expect_no_syntax_error(first, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusFile, testing::ValuesIn(cif_files_under(corpus_dir)),
                         [](const testing::TestParamInfo<std::string>& info) {
                             return corpus_test_name(corpus_dir, info.param);
                         });

// The IUCr syntax tests: our errors stand on the lines where the IUCr checker vcif reported
// errors. Where our rules knowingly differ from vcif's, the table says so line by line, and the
// test checks that the difference is the documented one and not some other fault.
struct LineNote {
    std::int32_t line;  // -1: no line
    std::uint32_t code; // what we raise there instead (0: nothing of that line's kind)
    const char* why;
};

struct SyntaxCase {
    const char* file;
    std::vector<LineNote> only_vcif; // vcif errs here, we don't (we may warn with `code`)
    std::vector<LineNote> only_ours; // we err here with `code`, vcif doesn't
};

const std::vector<SyntaxCase> syntax_cases = {
    {"ciftest0", {}, {{-1, 302, "no data block is an error here; vcif only warns"}}},
    {"ciftest1", {}, {{-1, 302, "no data block is an error here; vcif only warns"}}},
    {"ciftest2", {}, {}},
    {"ciftest3", {}, {}},
    {"ciftest4", {}, {}},
    {"ciftest5", {}, {}},
    {"ciftest6",
     {{3, 305, "data before the heading gets a block"}, {23, 309, "a bare data_ is a warning"}},
     {}},
    {"ciftest7",
     {{7, 312, "strays are dropped"},
      {11, 312, "strays are dropped"},
      {18, 0, "the indented ';' of line 17 opens a text field (351), that of 19 closes it (352)"},
      {25, 311, "strays after a text field that swallowed names are dropped"}},
     {}},
    {"ciftest8", {{10, 347, "a line over the soft limit is a warning"}}, {}},
    {"ciftest9",
     {{28, 312, "strays are dropped"},
      {31, 319, "a repeated loop_ is a warning"},
      {37, 312, "strays are dropped"},
      {-1, 0, "vcif gives no line for a loop that ends the file; we give its loop_ line, 41"}},
     {{24, 322, "a ragged loop is reported at its loop_ line; vcif's line 27 is an error here too (307)"},
      {41, 322, "a loop with no values is reported at its loop_ line"}}},
    {"ciftest10", {{32, 0, "a bare CR ends line 26, so the control-Z is on our 33: a blank (348)"}}, {}},
    {"ciftest11", {}, {}},
};

// Names the case in gtest's messages by its file instead of its bytes.
void PrintTo(const SyntaxCase& c, std::ostream* out)
{
    *out << c.file;
}

class IucrSyntax : public testing::TestWithParam<SyntaxCase> {};

TEST_P(IucrSyntax, ErrorsStandWhereVcifReportsThem)
{
    const SyntaxCase& c = GetParam();
    const fs::path cif = syntax_dir / (std::string(c.file) + ".cif");
    const fs::path result = vcif_dir / (std::string(c.file) + ".result");
    if (!fs::exists(cif) || !fs::exists(result))
        GTEST_SKIP() << corpus_missing;
    Cif reading(HCifDictionary(new CifConcreteDictionary));
    ASSERT_EQ(read_into(reading, read_bytes(cif)), "");
    std::set<std::int32_t> ours;
    std::string all;
    for (const CifError& e : *reading.errors()) {
        all += "\n  " + e.text();
        if (e.severity() == 2)
            ours.insert(e.line);
    }
    // vcif writes "ERROR: ... at line N" or "CIF ERROR: Line N ...": -1 for an error without a line.
    std::set<std::int32_t> expected;
    std::ifstream in(result);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("ERROR:", 0) != 0 && line.rfind("CIF ERROR:", 0) != 0)
            continue;
        const std::size_t at = line.find("at line "), line_at = line.find("Line ");
        expected.insert(at != std::string::npos        ? std::atoi(line.c_str() + at + 8)
                        : line_at != std::string::npos ? std::atoi(line.c_str() + line_at + 5)
                                                       : -1);
    }
    // The documented difference must be the one that happens: a lesser finding or none.
    for (const LineNote& n : c.only_vcif) {
        EXPECT_EQ(expected.erase(n.line), 1u) << "vcif reports no error at line " << n.line << ": " << n.why;
        EXPECT_TRUE(n.code == 0 || has_finding(reading, n.code, n.line, 1)) << n.why;
    }
    for (const LineNote& n : c.only_ours) {
        EXPECT_TRUE(expected.insert(n.line).second)
            << "vcif reports an error at line " << n.line << ": " << n.why;
        EXPECT_TRUE(has_finding(reading, n.code, n.line, 2)) << n.why;
    }
    EXPECT_EQ(ours, expected) << "lines with errors differ from vcif's; our findings:" << all;
}

INSTANTIATE_TEST_SUITE_P(Iucr, IucrSyntax, testing::ValuesIn(syntax_cases),
                         [](const testing::TestParamInfo<SyntaxCase>& info) {
                             return std::string(info.param.file);
                         });

} // namespace
