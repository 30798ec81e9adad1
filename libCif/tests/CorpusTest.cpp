// Runs the engine over every file of the shared corpus: real CIFs written by other programs and
// people, many of them damaged on purpose. Each file is its own test instance, named after it, so
// that a failure says which file broke.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifMessageTable.h"
#include "CifNameCompare.h"
#include "CifTestSupport.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path corpus_dir = fs::path(CIFWARD_SHARED_DIR) / "corpus";
const fs::path syntax_dir = corpus_dir / "iucr-ciftest" / "syntax";
const fs::path vcif_dir = corpus_dir / "iucr-ciftest" / "expected-vcif";
constexpr unsigned line_limit = 80;
constexpr int error_severity = 2;

// Stands in for the file list when the corpus is missing, so that the suites report one skip
// with a reason instead of silently running nothing.
const char* const missing_corpus = "";

std::string corpus_missing_message()
{
    return "corpus directory " + corpus_dir.string() + " not found: set CIFWARD_SHARED_DIR to the shared dir";
}

std::vector<std::string> corpus_files()
{
    std::vector<std::string> files;
    std::error_code ec;
    if (!fs::is_directory(corpus_dir, ec))
        return {missing_corpus};
    for (const auto& entry : fs::recursive_directory_iterator(corpus_dir, ec))
        if (entry.is_regular_file() && entry.path().extension() == ".cif")
            files.push_back(fs::relative(entry.path(), corpus_dir).generic_string());
    std::sort(files.begin(), files.end());
    return files;
}

// Test names may hold only letters, digits and underscores, and must be unique.
std::string name_after_file(const testing::TestParamInfo<std::string>& info)
{
    if (info.param == missing_corpus)
        return "CorpusMissing";
    static const std::map<std::string, std::string> names = test_names_for(corpus_files());
    return names.at(info.param);
}

std::string read_bytes(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Lines as the reader counts them: a carriage return, a line feed or the pair ends a line, and
// the text after the last line end is one more line, even when it is empty.
std::int32_t reader_line_count(const std::string& bytes)
{
    std::int32_t lines = 1;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')
            ++i;
        if (bytes[i] == '\r' || bytes[i] == '\n')
            ++lines;
    }
    return lines;
}

struct Reading {
    Cif cif{HCifDictionary(new CifConcreteDictionary)};
    std::string thrown; // what() of an exception that escaped the read, if one did
};

void read_stream(Reading& reading, std::istream& in)
{
    try {
        reading.cif.read(in, line_limit);
    } catch (const std::exception& e) {
        reading.thrown = e.what();
    } catch (...) {
        reading.thrown = "an exception not derived from std::exception";
    }
}

void read_file(Reading& reading, const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    read_stream(reading, in);
}

std::string written(const Cif& cif)
{
    std::ostringstream out;
    cif.write(out, line_limit);
    return out.str();
}

bool has_code(const Cif& cif, std::uint32_t code)
{
    const auto& list = *cif.errors();
    return std::any_of(list.begin(), list.end(), [code](const CifError& e) { return e.code == code; });
}

std::map<std::uint32_t, int> error_counts(const Cif& cif)
{
    std::map<std::uint32_t, int> counts;
    for (const CifError& e : *cif.errors())
        if (e.severity() == error_severity)
            ++counts[e.code];
    return counts;
}

std::string printable(const std::string& text)
{
    std::string out;
    for (unsigned char c : text) {
        if (c == '\n')
            out += "\\n";
        else if (c < 32 || c >= 127)
            out += "\\x" + std::string(1, "0123456789abcdef"[c >> 4]) + "0123456789abcdef"[c & 15];
        else
            out += static_cast<char>(c);
    }
    return out;
}

class CorpusFile : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        if (GetParam() == missing_corpus)
            GTEST_SKIP() << corpus_missing_message();
        path_ = corpus_dir / GetParam();
    }
    fs::path path_;
};

// ---------------------------------------------------------------------------------------------
// What the reader says about a file is coherent: each finding is a row of the message table and
// points at a line of the file.

void expect_coherent_findings(const Cif& cif, const fs::path& path)
{
    const std::int32_t lines = reader_line_count(read_bytes(path));
    for (const CifError& e : *cif.errors()) {
        EXPECT_EQ(cif_message(e.code).code, e.code) << "finding outside the message table: " << e.text();
        // Only the stream-level findings and the parser's internal ones have no line.
        const bool lineless = e.code == 301 || e.code == 302 || e.code == 316;
        if (lineless) {
            EXPECT_EQ(e.line, -1) << e.text();
        } else {
            EXPECT_TRUE(e.line >= 1 && e.line <= lines)
                << e.text() << " (the file has " << lines << " lines)";
        }
        EXPECT_NE(e.code, 316u) << "the parser met a state it should never reach: " << e.text();
    }
    EXPECT_EQ(cif.block_count() == 0, has_code(cif, 302))
        << "finding 302 must be raised exactly when no block was read";
}

// ---------------------------------------------------------------------------------------------
// Round trip: what the reader understood, written and read again, is understood the same way.

struct ItemImage {
    std::string name;
    std::vector<std::string> values;
    std::map<int, std::string> comments;
};

struct LoopImage {
    std::vector<std::string> names;
    std::map<int, std::string> comments;
    std::vector<std::string> notes;
};

struct BlockImage {
    std::string name;
    std::map<int, std::string> comments;
    std::vector<ItemImage> items; // those that are written: items that have a value
    std::vector<LoopImage> loops;
};

// What a read left in the model, in the form the round trip must keep. `pad_loops`: a ragged
// loop (322) is left with a short last row, and the writer fills the missing cells with ''; the
// first reading is padded the same way so that the comparison stays exact for every other value.
std::vector<BlockImage> image_of(const Cif& cif, bool pad_loops)
{
    std::vector<BlockImage> blocks;
    for (const HCifDataBlock& block : cif) {
        BlockImage b;
        b.name = block->name();
        b.comments = block->comments();
        std::map<std::string, std::size_t, CifNameLess> rows;
        for (const HCifLoop& loop : block->loops()) {
            LoopImage l{loop->names(), loop->comments(), loop->notes()};
            const HCifDataItem first = block->item(loop->names().front());
            for (const std::string& name : loop->names())
                rows[name] = first ? first->value_count() : 0;
            b.loops.push_back(std::move(l));
        }
        for (const HCifDataItem& item : *block) {
            ItemImage i{item->name(), {}, item->comments()};
            for (std::size_t row = 0; row < item->value_count(); ++row)
                i.values.push_back(item->value(row));
            const auto r = rows.find(item->name());
            if (pad_loops && item->is_looped() && r != rows.end() && i.values.size() < r->second)
                i.values.resize(r->second);
            if (!i.values.empty())
                b.items.push_back(std::move(i));
        }
        blocks.push_back(std::move(b));
    }
    return blocks;
}

bool same_names(const std::vector<std::string>& a, const std::vector<std::string>& b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](const std::string& x, const std::string& y) { return cif_names_equal(x, y); });
}

std::string comments_text(const std::map<int, std::string>& comments)
{
    std::string out;
    for (const auto& [position, text] : comments)
        out += "[" + std::to_string(position) + "] " + printable(text) + " ";
    return out;
}

void expect_same_model(const std::vector<BlockImage>& first, const std::vector<BlockImage>& second)
{
    ASSERT_EQ(first.size(), second.size()) << "block count";
    for (std::size_t b = 0; b < first.size(); ++b) {
        const BlockImage& x = first[b];
        const BlockImage& y = second[b];
        SCOPED_TRACE("block " + x.name);
        EXPECT_EQ(x.name, y.name);
        EXPECT_EQ(x.comments, y.comments) << comments_text(x.comments) << "| " << comments_text(y.comments);
        ASSERT_EQ(x.loops.size(), y.loops.size()) << "loop count";
        for (std::size_t l = 0; l < x.loops.size(); ++l) {
            SCOPED_TRACE("loop of " + x.loops[l].names.front());
            EXPECT_TRUE(same_names(x.loops[l].names, y.loops[l].names));
            EXPECT_EQ(x.loops[l].comments, y.loops[l].comments)
                << comments_text(x.loops[l].comments) << "| " << comments_text(y.loops[l].comments);
            EXPECT_EQ(x.loops[l].notes, y.loops[l].notes);
        }
        ASSERT_EQ(x.items.size(), y.items.size()) << "count of items with a value";
        for (std::size_t i = 0; i < x.items.size(); ++i) {
            SCOPED_TRACE("item " + x.items[i].name);
            EXPECT_EQ(x.items[i].name, y.items[i].name);
            EXPECT_EQ(x.items[i].values, y.items[i].values);
            EXPECT_EQ(x.items[i].comments, y.items[i].comments)
                << comments_text(x.items[i].comments) << "| " << comments_text(y.items[i].comments);
        }
    }
}

// Why the round trip is not promised for `cif`; empty when it is. It is promised for files without
// stray values (311 to 313): the reader drops those, and what stood around them changes meaning.
// Other errors do not exclude a file: a repeated name (318) keeps its first value, which is
// written and read as any other, and a ragged loop (322) is compared with its short row filled
// as the writer fills it. Every value is in: the writer chooses for each a form that reads back
// as the same text.
std::string round_trip_exclusion(const Cif& cif)
{
    for (std::uint32_t stray : {311u, 312u, 313u})
        if (has_code(cif, stray))
            return "the file has stray values (finding " + std::to_string(stray) + ")";
    return "";
}

void expect_round_trip(const Cif& first)
{
    const std::string text = written(first);
    Reading second;
    std::istringstream in(text);
    read_stream(second, in);
    ASSERT_EQ(second.thrown, "") << "reading the written text threw";

    expect_same_model(image_of(first, true), image_of(second.cif, false));

    const auto before = error_counts(first);
    for (const auto& [code, count] : error_counts(second.cif)) {
        const auto it = before.find(code);
        EXPECT_LE(count, it == before.end() ? 0 : it->second)
            << "new errors of code " << code << " after writing";
    }
    EXPECT_EQ(written(second.cif), text) << "writing the second reading changed the text";
}

// ---------------------------------------------------------------------------------------------
// Agreement with gemmi: a file that gemmi parses holds no fault of syntax by our reading either,
// except where our rules knowingly differ; those files are listed with the reason.

const std::set<std::uint32_t> syntax_codes = {306, 307, 308, 309, 310, 316, 319,
                                              321, 322, 350, 351, 352, 353};

struct GemmiException {
    const char* file;
    std::uint32_t code;
    const char* reason;
};

const GemmiException gemmi_exceptions[] = {
    {"iucr-ciftest/syntax/ciftest8.cif", 306,
     "a data name of 89 characters: gemmi sets no limit to the length of a name, this reader keeps 75"},
    {"cod/funny-disorder-markups.cif", 310,
     "block data_9000025_1 twice: `gemmi validate -f` checks the syntax only, and its full check "
     "reports the repeated block name as we do"},
};

bool gemmi_available()
{
    static const bool available = std::system("gemmi --version >/dev/null 2>&1") == 0;
    return available;
}

// Gives the exit status of `gemmi validate -f`: 0 when gemmi parses the file.
int gemmi_validate(const fs::path& path)
{
    std::string quoted = "'";
    for (char c : path.string())
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    quoted += "'";
    FILE* pipe = popen(("gemmi validate -f " + quoted + " 2>&1").c_str(), "r");
    if (!pipe)
        return -1;
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe)) {
    }
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void expect_no_syntax_error(const Cif& cif, const std::string& file)
{
    const auto listed = [&](std::uint32_t code) {
        return std::any_of(std::begin(gemmi_exceptions), std::end(gemmi_exceptions),
                           [&](const GemmiException& x) { return file == x.file && code == x.code; });
    };
    for (const CifError& e : *cif.errors()) {
        if (e.severity() == error_severity && syntax_codes.count(e.code) != 0) {
            EXPECT_TRUE(listed(e.code)) << "gemmi accepts the file, we raise " << e.text();
        }
    }
    // A listed difference that no longer happens is taken off the list, not left to hide one.
    for (const GemmiException& x : gemmi_exceptions) {
        if (file == x.file) {
            EXPECT_TRUE(has_code(cif, x.code))
                << "listed difference no longer seen: " << x.code << ", " << x.reason;
        }
    }
}

// ---------------------------------------------------------------------------------------------
// One instance per file runs every check on one reading of it. A check that does not apply to a
// file says why on the output; the reading itself is always checked.

TEST_P(CorpusFile, ReadsWritesBackAndAgreesWithGemmi)
{
    Reading first;
    read_file(first, path_);
    ASSERT_EQ(first.thrown, "") << "the read threw";
    {
        SCOPED_TRACE("findings of the reading");
        expect_coherent_findings(first.cif, path_);
    }
    if (const std::string why = round_trip_exclusion(first.cif); why.empty()) {
        SCOPED_TRACE("round trip");
        expect_round_trip(first.cif);
    } else {
        std::cout << "[   NOTE   ] no round trip: " << why << "\n";
    }
    if (!gemmi_available()) {
        std::cout << "[   NOTE   ] gemmi is not on PATH: no comparison\n";
    } else if (gemmi_validate(path_) != 0) {
        std::cout << "[   NOTE   ] gemmi rejects the file: no comparison\n";
    } else {
        SCOPED_TRACE("agreement with gemmi");
        expect_no_syntax_error(first.cif, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusFile, testing::ValuesIn(corpus_files()), name_after_file);

// ---------------------------------------------------------------------------------------------
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

const std::vector<SyntaxCase>& syntax_cases()
{
    static const std::vector<SyntaxCase> cases = {
        {"ciftest0", {}, {{-1, 302, "an empty file has no data block, an error here; vcif only warns"}}},
        {"ciftest1", {}, {{-1, 302, "a file of comments has no data block, an error here; vcif only warns"}}},
        {"ciftest2", {}, {}},
        {"ciftest3", {}, {}},
        {"ciftest4", {}, {}},
        {"ciftest5", {}, {}},
        {"ciftest6",
         {{3, 305, "data before the first heading goes into an added block, with a warning"},
          {23, 309, "a heading of \"data_\" alone is a warning"}},
         {}},
        {"ciftest7",
         {{7, 312, "stray values are dropped with a warning"},
          {11, 312, "stray values are dropped with a warning"},
          {18, 0,
           "the indented ';' on line 17 opens a text field (351) and the one on line 19 closes it (352): "
           "line 18 is text"},
          {25, 311, "stray values after a text field that swallowed data names are dropped with a warning"}},
         {}},
        {"ciftest8", {{10, 347, "a line over the soft limit is a warning"}}, {}},
        {"ciftest9",
         {{28, 312, "stray values are dropped with a warning"},
          {31, 319, "a repeated loop_ is a warning"},
          {37, 312, "stray values are dropped with a warning"},
          {-1, 0,
           "vcif gives no line for a loop that ends at the end of the file; we give the loop_ line, 41"}},
         {{24, 322,
           "a ragged loop is reported at its loop_ line; vcif reports it at line 27, where it noticed, and "
           "line 27 is an error for us as well (307)"},
          {41, 322, "a loop with no values is reported at its loop_ line; vcif gives no line"}}},
        {"ciftest10",
         {{32, 0,
           "the bare carriage return on line 26 ends a line here, so the control-Z is on our line 33; it "
           "becomes a blank (348), so it is no value and the loop stays complete"}},
         {}},
        {"ciftest11", {}, {}},
    };
    return cases;
}

// Names the case in gtest's messages by its file instead of its bytes.
void PrintTo(const SyntaxCase& c, std::ostream* out)
{
    *out << c.file;
}

// The lines of the errors that vcif printed; -1 for an error it gave without a line.
// vcif writes "ERROR: ... at line N" or "CIF ERROR: Line N ...".
std::set<std::int32_t> vcif_error_lines(const fs::path& result)
{
    std::set<std::int32_t> lines;
    std::ifstream in(result);
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("ERROR:", 0) != 0 && line.rfind("CIF ERROR:", 0) != 0)
            continue;
        std::int32_t number = -1;
        for (const char* marker : {"at line ", "Line "}) {
            const std::size_t at = line.find(marker);
            if (at != std::string::npos && number == -1)
                number = std::atoi(line.c_str() + at + std::strlen(marker));
        }
        lines.insert(number);
    }
    return lines;
}

class IucrSyntax : public testing::TestWithParam<SyntaxCase> {};

TEST_P(IucrSyntax, ErrorsStandWhereVcifReportsThem)
{
    const SyntaxCase& c = GetParam();
    const fs::path cif = syntax_dir / (std::string(c.file) + ".cif");
    const fs::path result = vcif_dir / (std::string(c.file) + ".result");
    if (!fs::exists(cif) || !fs::exists(result))
        GTEST_SKIP() << "IUCr syntax files not found in " << corpus_dir
                     << ": set CIFWARD_SHARED_DIR to the shared dir";

    Reading reading;
    read_file(reading, cif);
    ASSERT_EQ(reading.thrown, "");
    std::set<std::int32_t> ours;
    for (const CifError& e : *reading.cif.errors())
        if (e.severity() == error_severity)
            ours.insert(e.line);

    std::set<std::int32_t> expected = vcif_error_lines(result);
    for (const LineNote& n : c.only_vcif) {
        SCOPED_TRACE(n.why);
        EXPECT_EQ(expected.erase(n.line), 1u) << "vcif reports no error at line " << n.line;
        // The documented difference must be the one that happens: a lesser finding or none.
        const auto& list = *reading.cif.errors();
        if (n.code != 0) {
            EXPECT_TRUE(std::any_of(list.begin(), list.end(),
                                    [&](const CifError& e) {
                                        return e.line == n.line && e.code == n.code &&
                                               e.severity() < error_severity;
                                    }))
                << "expected finding " << n.code << " at line " << n.line;
        }
    }
    for (const LineNote& n : c.only_ours) {
        SCOPED_TRACE(n.why);
        EXPECT_TRUE(expected.insert(n.line).second)
            << "vcif reports an error at line " << n.line << " as well";
        const auto& list = *reading.cif.errors();
        EXPECT_TRUE(std::any_of(list.begin(), list.end(),
                                [&](const CifError& e) {
                                    return e.line == n.line && e.code == n.code &&
                                           e.severity() == error_severity;
                                }))
            << "expected error " << n.code << " at line " << n.line;
    }
    std::ostringstream all;
    for (const CifError& e : *reading.cif.errors())
        all << "\n  " << e.text();
    EXPECT_EQ(ours, expected) << "lines with errors differ from vcif's; our findings:" << all.str();
}

INSTANTIATE_TEST_SUITE_P(Iucr, IucrSyntax, testing::ValuesIn(syntax_cases()),
                         [](const testing::TestParamInfo<SyntaxCase>& info) {
                             return std::string(info.param.file);
                         });

// Every IUCr syntax file has its row in the table above, so that a file added to the suite
// cannot go unchecked.
TEST(IucrSyntaxTable, CoversEverySyntaxFile)
{
    if (!fs::is_directory(syntax_dir))
        GTEST_SKIP() << corpus_missing_message();
    std::set<std::string> files, rows;
    for (const auto& entry : fs::directory_iterator(syntax_dir))
        if (entry.path().extension() == ".cif")
            files.insert(entry.path().stem().string());
    for (const SyntaxCase& c : syntax_cases())
        rows.insert(c.file);
    EXPECT_EQ(files, rows);
}

} // namespace
