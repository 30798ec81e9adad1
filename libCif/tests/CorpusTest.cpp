// Runs the engine over every file of the shared corpus: real CIFs written by other programs and
// people, many of them damaged on purpose. Each file is its own test instance, named after it, so
// that a failure says which file broke.

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifMessageTable.h"
#include "CifNameCompare.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
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
    static const std::map<std::string, std::string> names = [] {
        std::map<std::string, std::string> out;
        std::set<std::string> used;
        for (const std::string& file : corpus_files()) {
            std::string name;
            for (unsigned char c : fs::path(file).replace_extension().generic_string())
                name += std::isalnum(c) ? static_cast<char>(c) : '_';
            std::string unique = name;
            for (int n = 2; !used.insert(unique).second; ++n)
                unique = name + "_" + std::to_string(n);
            out[file] = unique;
        }
        return out;
    }();
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
// Every file reads to the end without an exception, and what the reader says about it is
// coherent: each finding is a row of the message table and points at a line of the file.

TEST_P(CorpusFile, ReadsWithoutFault)
{
    Reading reading;
    read_file(reading, path_);
    ASSERT_EQ(reading.thrown, "") << "the read threw";

    const std::int32_t lines = reader_line_count(read_bytes(path_));
    for (const CifError& e : *reading.cif.errors()) {
        EXPECT_EQ(cif_message(e.code).code, e.code) << "finding outside the message table: " << e.text();
        // Only the stream-level findings and the parser's internal ones have no line.
        const bool lineless = e.code == 301 || e.code == 302 || e.code == 316;
        if (lineless)
            EXPECT_EQ(e.line, -1) << e.text();
        else
            EXPECT_TRUE(e.line >= 1 && e.line <= lines)
                << e.text() << " (the file has " << lines << " lines)";
        EXPECT_NE(e.code, 316u) << "the parser met a state it should never reach: " << e.text();
    }
    EXPECT_EQ(reading.cif.block_count() == 0, has_code(reading.cif, 302))
        << "finding 302 must be raised exactly when no block was read";
}

// ---------------------------------------------------------------------------------------------
// Round trip: what the reader understood, written and read again, is understood the same way.

// Whether the writer may put a single item's value first on its line: after comment 1, which
// ends in a line end, or when the value does not fit after the name padded to 32 characters and a
// blank within two characters of the limit.
bool may_begin_line(const CifDataItem& item, const std::string& v)
{
    const std::size_t col = std::max<std::size_t>(32, item.name().size()) + 1;
    return item.has_comment(1) || v.size() + col > line_limit - 2;
}

// Why the writer, by its documented rules, writes `v` in a form that reads back as something
// else; empty when it reads back as it is. The writer does not protect such values, so a file
// holding one cannot make the round trip. `line_start`: the value may be written first on a line,
// where a ';' opens a text field.
std::string unwritable_reason(const std::string& v, bool looped, bool line_start)
{
    const auto white = [](unsigned char c) {
        return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
    };
    // Bytes of 128 and above count as neither white space nor graphic.
    const auto graphic = [](unsigned char c) { return c > 32 && c < 127; };
    if (v.find('\n') != std::string::npos) {
        if (v.find("\n;") != std::string::npos)
            return "a text field holding a line that begins with ';'";
        if (v.back() != '\n')
            return "a text field not ending in a line end";
        return "";
    }
    const bool quoted = v.find(' ') != std::string::npos || (!v.empty() && (v[0] == '_' || v[0] == '[')) ||
                        (looped && v.empty());
    if (quoted) {
        const char q = v.find('\'') == std::string::npos ? '\'' : '"';
        for (std::size_t i = 0; i < v.size(); ++i) {
            const bool escaped = i > 0 && v[i - 1] == '\\';
            if (v[i] == q && !escaped && i + 1 < v.size() && !graphic(static_cast<unsigned char>(v[i + 1])))
                return std::string("a value holding the quote ") + q + " before white space";
        }
        if (!v.empty() && v.back() == '\\')
            return "a quoted value ending in a backslash";
        if (v.size() + 2 > 2048)
            return "a quoted value longer than a line can hold";
        return "";
    }
    if (std::any_of(v.begin(), v.end(), [&](unsigned char c) { return white(c); }))
        return "a value holding white space other than blanks";
    if (!v.empty() && (v[0] == '\'' || v[0] == '"' || v[0] == '#'))
        return std::string("a bare value beginning with ") + v[0];
    if (!v.empty() && v[0] == ';' && line_start)
        return "a bare value beginning with ; that may stand first on its line";
    if (cif_starts_with_nocase(v, "data_") || cif_starts_with_nocase(v, "loop_"))
        return "a value spelled as a keyword";
    return "";
}

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
            // A blank line right after a data name opens comment 1; the writer puts comment 1 on
            // the name's line, so that blank line becomes the end of the name's line and is gone
            // on the next reading. The comments themselves keep their place.
            const auto between = i.comments.find(1);
            if (!item->is_looped() && between != i.comments.end() && between->second.front() == '\n') {
                between->second.erase(0, 1);
                if (between->second.empty())
                    i.comments.erase(between);
            }
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

std::string unwritable_value(const Cif& cif)
{
    for (const HCifDataBlock& block : cif)
        for (const HCifDataItem& item : *block)
            for (std::size_t row = 0; row < item->value_count(); ++row) {
                const std::string v = item->value(row);
                const bool line_start = item->is_looped() || may_begin_line(*item, v);
                const std::string reason = unwritable_reason(v, item->is_looped(), line_start);
                if (!reason.empty())
                    return reason + ": " + block->name() + " " + item->name() + " = [" + printable(v) + "]";
            }
    return "";
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

TEST_P(CorpusFile, WritesWhatItReads)
{
    Reading first;
    read_file(first, path_);
    ASSERT_EQ(first.thrown, "");
    // Stray values are dropped by the reader; the round trip is promised only for files without.
    for (std::uint32_t stray : {311u, 312u, 313u})
        if (has_code(first.cif, stray))
            GTEST_SKIP() << "the file has stray values (finding " << stray << ")";
    const std::string unwritable = unwritable_value(first.cif);
    if (!unwritable.empty())
        GTEST_SKIP() << "the writer does not protect " << unwritable;

    const std::string text = written(first.cif);
    Reading second;
    std::istringstream in(text);
    read_stream(second, in);
    ASSERT_EQ(second.thrown, "");

    expect_same_model(image_of(first.cif, true), image_of(second.cif, false));

    const auto before = error_counts(first.cif);
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
    // gemmi puts no limit on the length of a data name; this reader keeps the limit of 75.
    {"iucr-ciftest/syntax/ciftest8.cif", 306, "data name of 89 characters"},
    // `gemmi validate -f` checks the syntax only; its full check reports the repeated block name
    // data_9000025_1 as we do.
    {"cod/funny-disorder-markups.cif", 310, "block name repeated"},
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

TEST_P(CorpusFile, RaisesNoSyntaxErrorWhereGemmiAccepts)
{
    if (!gemmi_available())
        GTEST_SKIP() << "gemmi is not on PATH";
    if (gemmi_validate(path_) != 0)
        GTEST_SKIP() << "gemmi rejects this file";
    Reading reading;
    read_file(reading, path_);
    ASSERT_EQ(reading.thrown, "");
    for (const CifError& e : *reading.cif.errors()) {
        if (e.severity() != error_severity || syntax_codes.count(e.code) == 0)
            continue;
        const auto known =
            std::find_if(std::begin(gemmi_exceptions), std::end(gemmi_exceptions),
                         [&](const GemmiException& x) { return GetParam() == x.file && e.code == x.code; });
        EXPECT_TRUE(known != std::end(gemmi_exceptions)) << "gemmi accepts the file, we raise " << e.text();
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

// The lines of the errors that vcif printed; -1 for an error it gave without a line.
std::set<std::int32_t> vcif_error_lines(const fs::path& result)
{
    std::set<std::int32_t> lines;
    std::ifstream in(result);
    static const std::regex at_line(R"((?:at line|Line) (\d+))");
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("ERROR:", 0) != 0 && line.rfind("CIF ERROR:", 0) != 0)
            continue;
        std::smatch m;
        lines.insert(std::regex_search(line, m, at_line) ? std::stoi(m[1]) : -1);
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
