#include "BatchChecker.h"
#include "Cif.h"
#include "CifConcreteDictionary.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct CheckRun {
    int status;
    std::string out;
    std::string err;
};

// Runs the checker in this process. Without a dictionary option it checks the syntax only, so
// that the cases below don't depend on which dictionaries are installed.
CheckRun check(std::vector<std::string> args, const std::string& input = "")
{
    if (std::none_of(args.begin(), args.end(), [](const std::string& a) {
            return a.rfind("--dict-dir", 0) == 0 || a == "--list-dicts" || a == "--no-dict";
        }))
        args.insert(args.begin(), "--no-dict");
    args.insert(args.begin(), "cifward-check");
    std::vector<const char*> argv;
    for (const std::string& a : args)
        argv.push_back(a.c_str());
    argv.push_back(nullptr);
    std::istringstream in(input);
    std::ostringstream out, err;
    const int status = BatchChecker::main(static_cast<int>(args.size()), argv.data(), in, out, err);
    return {status, out.str(), err.str()};
}

// Arguments; the exact status, standard output and standard error; standard input.
struct Case {
    std::vector<std::string> args;
    int status;
    std::string out, err = "", input = "";
};

// Each line prefixed with the file's name, as the report writes it.
std::string report(const std::string& file, std::initializer_list<const char*> lines)
{
    std::string text;
    for (const char* line : lines)
        text += file + ": " + line + "\n";
    return text;
}

void expect_runs(const std::vector<Case>& cases)
{
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const CheckRun run = check(c.args, c.input);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(run.out, c.out);
        EXPECT_EQ(run.err, c.err);
    }
}

// A fresh directory, removed with all it holds.
struct TempDir {
    const fs::path dir = mkdtemp((fs::temp_directory_path() / "cifward-check-test-XXXXXX").string().data());
    ~TempDir()
    {
        std::error_code ec;
        fs::remove_all(dir, ec);
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string file(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
};

std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

CheckRun shell(const std::string& command)
{
    const TempDir capture; // tests run in parallel processes: each needs a file of its own
    FILE* pipe = popen((command + " 2>" + capture.path("err")).c_str(), "r");
    std::string out;
    char buffer[4096];
    for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        out.append(buffer, n);
    const int raw = pclose(pipe);
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, out, slurp(capture.path("err"))};
}

const std::string clean = ": 0 errors, 0 warnings, 0 remarks\n";
const char* const good_cif = "data_good\n_cell_length_a 5.1\nloop_\n_x\n_y\n1 2\n3 4\n";
const std::string program = CIFWARD_CHECKER_PATH;
const std::string shared_dict_dir = (fs::path(CIFWARD_SHARED_DIR) / "dict").string();

} // namespace

TEST(CheckerOptionsTest, UsageErrorsExitWithTwoAndOneLineOnStandardError)
{
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "no input file"},
        {{"--frobnicate", "a.cif"}, "unknown option '--frobnicate'"},
        {{"--line-limit", "abc", "a.cif"}, "invalid line limit 'abc'"},
        {{"a.cif", "--line-limit"}, "option '--line-limit' needs a value"},
        {{"--format", "xml", "a.cif"}, "unknown format 'xml'"},
        {{"--no-dict", "--dict-dir", "d", "a.cif"},
         "--no-dict cannot be combined with --dict-dir or --list-dicts"},
        {{"--mandatory"}, "option '--mandatory' needs a value"}};
    for (const auto& [args, message] : cases) {
        SCOPED_TRACE(testing::PrintToString(args));
        const CheckRun run = check(args);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("cifward-check: " + message, 0), 0u) << run.err;
        EXPECT_NE(run.err.find("Try 'cifward-check --help'"), std::string::npos);
    }
    const CheckRun help = check({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: cifward-check [options] FILE..."), std::string::npos);
    EXPECT_NE(help.out.find("--line-limit N"), std::string::npos);
}

TEST(CheckerTest, ReportsFindingsSummaryAndExitStatus)
{
    TempDir dir;
    const std::string good = dir.file("good.cif", good_cif),
                      bad = dir.file("bad.cif",
                                     "data_bad\n_cell_length_a\n_cell_length_b 5.1\nloop_\n_x\n_y\n1 2 3\n"),
                      long_line = dir.file("long.cif", "data_l\n_a " + std::string(90, 'x') + "\n"),
                      binary = dir.file("picture.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)),
                      missing = dir.path("missing.cif"), one_error = dir.file("b.cif", "data_b\n_a\n"),
                      not_gzip = dir.file("plain.cif.gz", good_cif),
                      // The first bytes of a gzip member, cut off after its header.
        truncated = dir.file("cut.cif.gz", std::string("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10)),
                      list_of_paths =
                          dir.file("list.txt", missing + "\n\n" + dir.dir.string() + "\n" + good + "\r\n"),
                      c = dir.file("c.cif", "data_c\n_cell_length_a ?\n_cell_angle_beta 90\n"),
                      list = dir.file("mandatory.txt",
                                      "# items a submission needs\ndata_crystal\n_cell_length_a\n"
                                      "_cell_volume\ndata_publication\n_publ_section_title\n");
    const std::string cannot_read = "cifward-check: cannot read '";
    const std::string json =
        "{\n  \"program\": \"Cifward\", \"version\": \"1.1\",\n  \"dictionaries\": [],\n"
        "  \"files\": [\n    {\"file\": \"" +
        one_error +
        "\", \"blocks\": [\"data_b\"], "
        "\"findings\": [\n      {\"code\": 308, \"severity\": 2, \"severity_text\": \"Error\", "
        "\"line\": 2, \"first\": \"_a\", \"second\": \"\", \"message\": \"Data name _a not "
        "followed by data value\", \"text\": \"Error: Line 2 : Data name _a not followed by "
        "data value\"}\n    ], \"errors\": 1, \"warnings\": 0, \"remarks\": 0},\n    {\"file\": "
        "\"<stdin>\", \"blocks\": [\"data_one\", \"data_two\"], \"findings\": [], \"errors\": "
        "0, \"warnings\": 0, \"remarks\": 0}\n  ]\n}\n";
    expect_runs({
        {{good}, 0, good + clean},
        {{bad},
         1,
         report(bad, {"Error: Line 2 : Data name _cell_length_a immediately followed by another data name",
                      "Error: Line 4 : Too many or too few data values in the loop",
                      "2 errors, 0 warnings, 0 remarks"})},
        {{"--quiet", bad, good}, 1, report(bad, {"2 errors, 0 warnings, 0 remarks"}) + good + clean},
        {{long_line},
         0,
         report(long_line,
                {"Warning: Line 2 : More than 80 characters long", "0 errors, 1 warning, 0 remarks"})},
        {{"--line-limit", "100", long_line}, 0, long_line + clean},
        {{"--version"}, 0, "cifward-check (Cifward) 1.1\n"},
        // An unreadable input is named; the others are still checked, and the status says so.
        {{missing, good}, 2, good + clean, cannot_read + missing + "': No such file or directory\n"},
        {{dir.dir.string(), good}, 2, good + clean, cannot_read + dir.dir.string() + "': Is a directory\n"},
        {{binary, good}, 2, good + clean, cannot_read + binary + "': a PNG image, not a CIF\n"},
        {{not_gzip, good}, 2, good + clean, cannot_read + not_gzip + "': not in gzip format\n"},
        {{truncated, good}, 2, good + clean, cannot_read + truncated + "': truncated gzip data\n"},
        // A list with an empty line, a missing path and a directory: each said, the rest checked.
        {{"--files-from", list_of_paths, good},
         2,
         good + clean + good + clean,
         "cifward-check: 1 empty line in the list '" + list_of_paths + "' skipped\n" + cannot_read + missing +
             "': No such file or directory\n" + cannot_read + dir.dir.string() + "': Is a directory\n"},
        {{"--files-from", "-"}, 0, good + clean, "", good + "\n"},
        {{"--files-from", missing, good},
         2,
         good + clean,
         "cifward-check: cannot read the list '" + missing + "': No such file or directory\n"},
        {{"-"},
         1,
         report("<stdin>", {"Error: Line 2 : No terminating (') quote", "1 error, 0 warnings, 0 remarks"}),
         "",
         "data_in\n_a 'open\n"},
        {{"--format", "json", one_error, "-"}, 1, json, "", "data_one\ndata_two\n"},
        // Without a dictionary no block shows a category, so the first block is checked for the
        // publication list and then for the crystal list.
        {{"--mandatory", list, c},
         0,
         report(c, {"Remark: Line 1 : Data item _publ_section_title not found in block data_c",
                    "Remark: Line 1 : Data item _cell_length_a not set in block data_c",
                    "Remark: Line 1 : Data item _cell_volume not found in block data_c",
                    "0 errors, 0 warnings, 3 remarks"})},
        {{"--mandatory", dir.path("none.txt"), c},
         2,
         "",
         "cifward-check: cannot read the mandatory items file '" + dir.path("none.txt") + "'\n"},
    });
}

TEST(CheckerTest, OutputWritesTheDocumentBackAndNeverOverTheInput)
{
    TempDir dir;
    const std::string text = "# head\ndata_x\n_a 'b c'\nloop_\n_l\n_m\nv w\n";
    const std::string input = dir.file("in.cif", text), output = dir.path("out.cif");
    CheckRun run = check({input, "-o", output});
    EXPECT_EQ(run.status, 0) << run.err;
    HCifDictionary dictionary(new CifConcreteDictionary);
    Cif reread(dictionary);
    std::ifstream written(output, std::ios::binary);
    reread.read(written);
    ASSERT_EQ(reread.block_count(), 1u);
    EXPECT_EQ(reread.block(0).first_value("_a"), "b c");
    EXPECT_EQ(reread.block(0).item("_m")->value(0), "w");
    EXPECT_EQ(reread.block(0).comment(0), "# head\n");

    // Onto the input itself, by any spelling of its path, or into a missing directory: refused.
    const std::string refused = "cifward-check: refusing to write over the input file '" + input + "'\n";
    expect_runs({
        {{input, "--output", input}, 2, input + clean, refused},
        {{input, "--output", dir.dir.string() + "/./in.cif"}, 2, input + clean, refused},
        {{input, "-o", dir.path("no/such/out.cif")},
         2,
         input + clean,
         "cifward-check: cannot write '" + dir.path("no/such/out.cif") + "': No such file or directory\n"},
    });
    EXPECT_EQ(slurp(input), text);

    // Standard output takes the document, the report moves to standard error.
    run = check({input, "-o", "-"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("# head\ndata_x\n_a", 0), 0u) << run.out;
    EXPECT_EQ(run.err, input + clean);
}

TEST(CheckerProgramTest, FailedWriteLeavesTheOldOutputIntactAndNoTemporaryFile)
{
    TempDir dir;
    std::string big = "data_big\nloop_\n_v\n";
    for (int i = 0; i < 20000; ++i)
        big += "value" + std::to_string(i) + "\n";
    const std::string input = dir.file("big.cif", big);
    const std::string output = dir.file("out.cif", "data_previous\n_keep me\n");
    // A file size limit of 4 KiB makes the write fail the way a full disk does.
    const CheckRun run = shell("bash -c 'ulimit -f 4; trap \"\" XFSZ; exec " + program + " -q " + input +
                               " -o " + output + "'");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("cifward-check: cannot write '" + output + "': File too large"), std::string::npos)
        << run.err;
    EXPECT_EQ(slurp(output), "data_previous\n_keep me\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.dir), fs::directory_iterator()), 2);
}

TEST(CheckerProgramTest, JsonIsValidUtf8ForLatin1AndControlBytes)
{
    if (std::system("python3 -c 'import json' >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "python3 is not installed";
    TempDir dir;
    // A degree sign in Latin-1, a bell byte, quotes and a backslash in values and findings.
    const std::string odd = dir.file("odd.cif", "data_\xb0\n_a \"q\\\"\x07\n_b 'x\n");
    const CheckRun run = shell(program + " --no-dict --format json " + odd +
                               " | python3 -c 'import json,sys; d=json.load(sys.stdin); "
                               "f=d[\"files\"][0]; print(f[\"blocks\"][0]); print(len(f[\"findings\"]))'");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "data_\xc2\xb0\n4\n");
}

TEST(CheckerDictionaryTest, ValuesAreCheckedAndRejectedDictionariesReported)
{
    if (!fs::exists(fs::path(shared_dict_dir) / "cif_core.dic"))
        GTEST_SKIP() << "no core dictionary at " << shared_dict_dir;
    TempDir dir;
    // A definition with a _type no reader accepts: the whole file is rejected.
    dir.file("bad.dic", "data_on_this_dictionary\n_dictionary_name bad.dic\n_dictionary_version 1.0\n"
                        "data_thing\n_name '_thing'\n_type text\n");
    const std::string good = dir.file("good.cif", good_cif), empty = dir.path("empty"),
                      values =
                          dir.file("values.cif", "data_v\n_cell_length_a -2.0\n_cell_angle_beta 95.1(3)\n"
                                                 "_atom_site_calc_flag maybe\n_my_own_item 1\n");
    fs::create_directory(empty);
    const std::string core = "cif_core.dic 2.4.5 " + shared_dict_dir + "/cif_core.dic\n";
    const std::string rejected =
        "cifward-check: dictionary rejected: " + dir.path("bad.dic") +
        "\n  Error: Line 4 : Invalid value for _type 'text' : expected 'numb', 'char' "
        "or 'null'\n";
    expect_runs({
        {{"--dict-dir", shared_dict_dir, values},
         0,
         report(values,
                {"Warning: Line 2 : Data value should be greater than a defined limit : _cell_length_a",
                 "Warning: Line 4 : Data value is not in dictionary enumeration list : _atom_site_calc_flag",
                 "Warning: Line 5 : Created non-standard data item _my_own_item",
                 "0 errors, 3 warnings, 0 remarks"})},
        {{"--list-dicts", "--dict-dir", dir.dir.string(), "--dict-dir", shared_dict_dir}, 0, core, rejected},
        // Checking goes on with the dictionaries that loaded, or with the syntax only.
        {{"--dict-dir", dir.dir.string(), "--dict-dir", shared_dict_dir, "-q", good},
         0,
         report(good, {"0 errors, 2 warnings, 0 remarks"}),
         rejected},
        {{"--dict-dir", empty, "-q", good},
         0,
         good + clean,
         "cifward-check: no dictionary loaded; checking the syntax only\n"},
    });
    // The built program finds the dictionary copied beside itself.
    const CheckRun run = shell(program + " --list-dicts");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "cif_core.dic 2.4.5 " +
                           (fs::path(program).parent_path() / "dict" / "cif_core.dic").string() + "\n");
}

namespace {

// Every CIF of the shared corpus, in a fixed order; empty when the corpus is absent.
std::vector<std::string> corpus_files()
{
    std::vector<std::string> files;
    const fs::path corpus = fs::path(CIFWARD_SHARED_DIR) / "corpus";
    std::error_code ec;
    for (fs::recursive_directory_iterator it(corpus, ec), end; !ec && it != end; it.increment(ec))
        if (it->path().extension() == ".cif")
            files.push_back(it->path().string());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

TEST(CheckerProgramTest, ParallelRunsGiveTheSequentialOutputOverTheCorpus)
{
    const std::vector<std::string> files = corpus_files();
    if (files.empty())
        GTEST_SKIP() << "no corpus in " << CIFWARD_SHARED_DIR;
    // The list holds a missing file and a directory among the corpus, so that the messages on
    // standard error must keep their places too.
    TempDir dir;
    std::string list;
    for (std::size_t i = 0; i < files.size(); ++i) {
        list += files[i] + "\n";
        if (i == files.size() / 3)
            list += dir.path("gone.cif") + "\n" + dir.dir.string() + "\n";
    }
    const std::string list_file = dir.file("corpus.txt", list);
    for (const char* format : {"text", "json", "jsonl"}) {
        SCOPED_TRACE(format);
        const std::string command = program + " --format " + format + " --files-from " + list_file;
        const CheckRun sequential = shell(command + " -j 1");
        EXPECT_EQ(sequential.status, 2);
        EXPECT_NE(sequential.out.find(files.back()), std::string::npos);
        for (const char* jobs : {"2", "3"}) {
            const CheckRun parallel = shell(command + " -j " + jobs);
            EXPECT_EQ(parallel.status, sequential.status) << jobs;
            EXPECT_TRUE(parallel.out == sequential.out) << jobs << " jobs: the report differs";
            EXPECT_EQ(parallel.err, sequential.err) << jobs;
        }
    }
}

TEST(CheckerProgramTest, JsonLinesHoldTheFilesOfTheJsonDocumentOnePerLine)
{
    const std::vector<std::string> files = corpus_files();
    if (files.empty() || std::system("python3 -c 'import json' >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "no corpus or no python3";
    TempDir dir;
    std::string list;
    for (const std::string& file : files)
        list += file + "\n";
    const std::string list_file = dir.file("corpus.txt", list);
    shell(program + " -j 2 --format json --files-from " + list_file + " >" + dir.path("doc.json"));
    shell(program + " -j 2 --format jsonl --files-from " + list_file + " >" + dir.path("lines.jsonl"));
    // Each line alone is a JSON object, and the objects are the document's files, in order.
    const CheckRun run = shell("python3 -c 'import json,sys\n"
                               "doc = json.load(open(sys.argv[1]))\n"
                               "lines = [json.loads(l) for l in open(sys.argv[2], encoding=\"utf-8\")]\n"
                               "print(len(lines), lines == doc[\"files\"])' " +
                               dir.path("doc.json") + " " + dir.path("lines.jsonl"));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, std::to_string(files.size()) + " True\n");
}

TEST(CheckerProgramTest, CompressedAndDamagedCorpusFilesAreReadAsTheirText)
{
    const fs::path original =
        fs::path(CIFWARD_SHARED_DIR) / "corpus" / "iucr-ciftest" / "syntax" / "ciftest10.cif";
    if (!fs::exists(original))
        GTEST_SKIP() << "no corpus file " << original;
    TempDir dir;
    std::string text = slurp(original.string());
    const std::string plain = dir.file("plain.cif", text);
    ASSERT_EQ(shell("gzip -c " + plain + " >" + dir.path("packed.cif.gz")).status, 0);
    // A NUL inside the value of the first data item, which ends its line as a stray byte would.
    const std::string::size_type item = text.find("\n_");
    const std::string::size_type value = text.find(' ', item + 2);
    ASSERT_NE(value, std::string::npos);
    const int nul_line = static_cast<int>(std::count(text.begin(), text.begin() + value, '\n')) + 1;
    text.insert(value + 2, 1, '\0');
    const std::string with_nul = dir.file("nul.cif", text);

    const auto findings_of = [](const std::string& file) {
        const CheckRun run = check({file});
        std::string lines;
        std::istringstream in(run.out);
        for (std::string line; std::getline(in, line);)
            lines += line.substr(file.size()) + "\n";
        return std::make_pair(run.status, lines);
    };
    const auto plain_findings = findings_of(plain);
    EXPECT_EQ(findings_of(dir.path("packed.cif.gz")), plain_findings);
    EXPECT_EQ(check({"-"}, slurp(dir.path("packed.cif.gz"))).out, check({"-"}, slurp(plain)).out);

    const auto nul_findings = findings_of(with_nul);
    EXPECT_EQ(nul_findings.first, plain_findings.first);
    EXPECT_NE(nul_findings.second.find(": Warning: Line " + std::to_string(nul_line) +
                                       " : Invalid non-printable character \\00\n"),
              std::string::npos)
        << nul_findings.second;
}
