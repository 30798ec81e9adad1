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
#include <unistd.h>
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
    const bool chooses_dictionaries = std::any_of(args.begin(), args.end(), [](const std::string& a) {
        return a == "--dict-dir" || a == "--list-dicts" || a == "--no-dict" || a.rfind("--dict-dir=", 0) == 0;
    });
    if (!chooses_dictionaries)
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

class TempDir {
public:
    TempDir()
    {
        std::string pattern = (fs::temp_directory_path() / "cifward-check-test-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TempDir()
    {
        std::error_code ec;
        fs::permissions(path_, fs::perms::owner_all, ec);
        fs::remove_all(path_, ec);
    }
    std::string file(const std::string& name, const std::string& content) const
    {
        const std::string path = (path_ / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }
    std::string path(const std::string& name) const { return (path_ / name).string(); }
    const fs::path& dir() const { return path_; }

private:
    fs::path path_;
};

std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

int count_lines(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

CheckRun shell(const std::string& command)
{
    // Tests run in parallel processes: each capture needs a file of its own.
    std::string err_file = (fs::temp_directory_path() / "cifward-check-stderr-XXXXXX").string();
    const int fd = mkstemp(err_file.data());
    if (fd >= 0)
        close(fd);
    FILE* pipe = popen((command + " 2>" + err_file).c_str(), "r");
    std::string out;
    char buffer[4096];
    std::size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
        out.append(buffer, n);
    const int raw = pclose(pipe);
    CheckRun run{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, out, slurp(err_file)};
    std::remove(err_file.c_str());
    return run;
}

const char* const good_cif = "data_good\n_cell_length_a 5.1\nloop_\n_x\n_y\n1 2\n3 4\n";
const char* const bad_cif = "data_bad\n_cell_length_a\n_cell_length_b 5.1\nloop_\n_x\n_y\n1 2 3\n";

} // namespace

TEST(CheckerOptionsTest, UsageErrorsExitWithTwoAndOneLineOnStandardError)
{
    struct Case {
        std::vector<std::string> args;
        std::string message;
    };
    const std::vector<Case> cases = {
        {{}, "no input file"},
        {{"--frobnicate", "a.cif"}, "unknown option '--frobnicate'"},
        {{"--line-limit", "abc", "a.cif"}, "invalid line limit 'abc'"},
        {{"--line-limit", "0", "a.cif"}, "invalid line limit '0'"},
        {{"--line-limit=-5", "a.cif"}, "invalid line limit '-5'"},
        {{"a.cif", "--line-limit"}, "option '--line-limit' needs a value"},
        {{"--format", "xml", "a.cif"}, "unknown format 'xml'"},
        {{"-o", "out.cif", "a.cif", "b.cif"}, "--output takes exactly one input file"},
        {{"--output=", "a.cif"}, "option '--output' needs a path"},
        {{"--quiet=yes", "a.cif"}, "option '--quiet' takes no value"},
        {{"--dict-dir", "", "a.cif"}, "option '--dict-dir' needs a directory"},
        {{"--no-dict", "--dict-dir", "d", "a.cif"},
         "--no-dict cannot be combined with --dict-dir or --list-dicts"},
        {{"--mandatory"}, "option '--mandatory' needs a value"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const CheckRun run = check(c.args);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("cifward-check: " + c.message, 0), 0u) << run.err;
        EXPECT_NE(run.err.find("Try 'cifward-check --help'"), std::string::npos);
    }
}

TEST(CheckerOptionsTest, HelpAndVersionNeedNoFile)
{
    const CheckRun help = check({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: cifward-check [options] FILE..."), std::string::npos);
    EXPECT_NE(help.out.find("--line-limit N"), std::string::npos);
    const CheckRun version = check({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "cifward-check (Cifward) 1.1\n");
}

TEST(CheckerTest, ReportsFindingsSummaryAndExitStatus)
{
    TempDir dir;
    const std::string good = dir.file("good.cif", good_cif);
    const std::string bad = dir.file("bad.cif", bad_cif);
    const std::string long_line = dir.file("long.cif", "data_l\n_a " + std::string(90, 'x') + "\n");

    struct Case {
        std::vector<std::string> args;
        int status;
        std::string out;
    };
    const std::vector<Case> cases = {
        {{good}, 0, good + ": 0 errors, 0 warnings, 0 remarks\n"},
        {{bad},
         1,
         bad + ": Error: Line 2 : Data name _cell_length_a immediately followed by another data name\n" +
             bad + ": Error: Line 4 : Too many or too few data values in the loop\n" + bad +
             ": 2 errors, 0 warnings, 0 remarks\n"},
        {{"--quiet", bad, good},
         1,
         bad + ": 2 errors, 0 warnings, 0 remarks\n" + good + ": 0 errors, 0 warnings, 0 remarks\n"},
        {{long_line},
         0,
         long_line + ": Warning: Line 2 : More than 80 characters long\n" + long_line +
             ": 0 errors, 1 warning, 0 remarks\n"},
        {{"--line-limit", "100", long_line}, 0, long_line + ": 0 errors, 0 warnings, 0 remarks\n"},
        {{"--line-limit=20", "--no-dict", good}, 0, good + ": 0 errors, 0 warnings, 0 remarks\n"},
        {{"--", good}, 0, good + ": 0 errors, 0 warnings, 0 remarks\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const CheckRun run = check(c.args);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(run.out, c.out);
        EXPECT_EQ(run.err, "");
    }
}

TEST(CheckerTest, UnreadableInputsAreNamedAndGiveStatusTwo)
{
    TempDir dir;
    const std::string good = dir.file("good.cif", good_cif);
    const std::string binary = dir.file("picture.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    const std::string missing = dir.path("missing.cif");
    const std::string directory = dir.dir().string();

    struct Case {
        std::string path;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {missing, "No such file or directory"},
        {directory, "Is a directory"},
        {binary, "a binary file, not a CIF"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        // The good file is still checked and reported; the status says a file could not be read.
        const CheckRun run = check({c.path, good});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, "cifward-check: cannot read '" + c.path + "': " + c.reason + "\n");
        EXPECT_EQ(run.out, good + ": 0 errors, 0 warnings, 0 remarks\n");
    }
}

TEST(CheckerTest, StandardInputIsReadForDash)
{
    const CheckRun run = check({"-"}, "data_in\n_a 'open\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out,
              "<stdin>: Error: Line 2 : No terminating (') quote\n<stdin>: 1 error, 0 warnings, 0 remarks\n");
}

TEST(CheckerTest, JsonCarriesEveryFieldOfEachFinding)
{
    TempDir dir;
    const std::string bad = dir.file("bad.cif", "data_b\n_a\n");
    const CheckRun run = check({"--format", "json", bad, "-"}, "data_one\ndata_two\n");
    EXPECT_EQ(run.status, 1);
    const std::string expected =
        "{\n  \"program\": \"Cifward\", \"version\": \"1.1\",\n  \"dictionaries\": [],\n  \"files\": [\n"
        "    {\"file\": \"" +
        bad +
        "\", \"blocks\": [\"data_b\"], \"findings\": [\n"
        "      {\"code\": 308, \"severity\": 2, \"severity_text\": \"Error\", "
        "\"line\": 2, \"first\": \"_a\", "
        "\"second\": \"\", \"message\": \"Data name _a not followed by data "
        "value\", \"text\": \"Error: Line 2 : "
        "Data name _a not followed by data value\"}\n"
        "    ], \"errors\": 1, \"warnings\": 0, \"remarks\": 0},\n"
        "    {\"file\": \"<stdin>\", \"blocks\": [\"data_one\", \"data_two\"], "
        "\"findings\": [], \"errors\": 0, "
        "\"warnings\": 0, \"remarks\": 0}\n  ]\n}\n";
    EXPECT_EQ(run.out, expected);
}

TEST(CheckerTest, JsonIsValidUtf8ForLatin1AndControlBytes)
{
    if (std::system("python3 -c 'import json' >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "python3 is not installed";
    TempDir dir;
    // A degree sign in Latin-1, a bell byte, quotes and a backslash in values and findings.
    const std::string odd = dir.file("odd.cif", "data_\xb0\n_a \"q\\\"\x07\n_b 'x\n");
    const CheckRun run = shell(std::string(CIFWARD_CHECKER_PATH) + " --no-dict --format json " + odd +
                               " | python3 -c 'import json,sys; d=json.load(sys.stdin); "
                               "f=d[\"files\"][0]; print(f[\"blocks\"][0]); print(len(f[\"findings\"]))'");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "data_\xc2\xb0\n4\n");
}

TEST(CheckerTest, OutputWritesTheDocumentBackAndNeverOverTheInput)
{
    TempDir dir;
    const std::string input = dir.file("in.cif", "# head\ndata_x\n_a 'b c'\nloop_\n_l\n_m\nv w\n");
    const std::string output = dir.path("out.cif");

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

    // Onto the input itself, by any spelling of its path: refused, input untouched.
    const std::string before = slurp(input);
    for (const std::string& target : {input, dir.dir().string() + "/./in.cif"}) {
        SCOPED_TRACE(target);
        run = check({input, "--output", target});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, "cifward-check: refusing to write over the input file '" + input + "'\n");
        EXPECT_EQ(slurp(input), before);
    }

    // Standard output takes the document, the report moves to standard error.
    run = check({input, "-o", "-"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("# head\ndata_x\n_a", 0), 0u) << run.out;
    EXPECT_EQ(run.err, input + ": 0 errors, 0 warnings, 0 remarks\n");

    // A directory that does not exist.
    run = check({input, "-o", dir.path("no/such/dir/out.cif")});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("cannot write '" + dir.path("no/such/dir/out.cif") + "'"), std::string::npos);
}

TEST(CheckerTest, FailedWriteLeavesTheOldOutputIntactAndNoTemporaryFile)
{
    TempDir dir;
    std::string big = "data_big\nloop_\n_v\n";
    for (int i = 0; i < 20000; ++i)
        big += "value" + std::to_string(i) + "\n";
    const std::string input = dir.file("big.cif", big);
    const std::string output = dir.file("out.cif", "data_previous\n_keep me\n");

    // A file size limit of 4 KiB makes the write fail the way a full disk does.
    const CheckRun run = shell("bash -c 'ulimit -f 4; trap \"\" XFSZ; exec " +
                               std::string(CIFWARD_CHECKER_PATH) + " -q " + input + " -o " + output + "'");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("cifward-check: cannot write '" + output + "': File too large"), std::string::npos)
        << run.err;
    EXPECT_EQ(slurp(output), "data_previous\n_keep me\n");
    int files = 0;
    for (const auto& entry : fs::directory_iterator(dir.dir())) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 2);
}

TEST(CheckerTest, CorpusFilesGiveTheSameVerdictFromTheProgram)
{
    const fs::path corpus = fs::path(CIFWARD_SHARED_DIR) / "corpus" / "iucr-ciftest" / "real";
    if (!fs::is_directory(corpus))
        GTEST_SKIP() << "no corpus at " << corpus;
    // A real file checks clean of errors; a damaged syntax file does not.
    struct Case {
        fs::path file;
        int status;
    };
    const std::vector<Case> cases = {
        {corpus / "1crn.cif", 0},
        {corpus.parent_path() / "syntax" / "ciftest9.cif", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file.string());
        const CheckRun run = shell(std::string(CIFWARD_CHECKER_PATH) + " -q " + c.file.string());
        EXPECT_EQ(run.status, c.status) << run.out << run.err;
        EXPECT_EQ(count_lines(run.out), 1);
    }
}

namespace {
std::string shared_dict_dir()
{
    return (fs::path(CIFWARD_SHARED_DIR) / "dict").string();
}
} // namespace

TEST(CheckerDictionaryTest, ValuesAreCheckedAgainstTheCoreDictionary)
{
    if (!fs::exists(fs::path(shared_dict_dir()) / "cif_core.dic"))
        GTEST_SKIP() << "no core dictionary at " << shared_dict_dir();
    TempDir dir;
    const std::string file = dir.file("values.cif", "data_v\n_cell_length_a -2.0\n_cell_angle_beta 95.1(3)\n"
                                                    "_atom_site_calc_flag maybe\n_my_own_item 1\n");
    struct Case {
        std::vector<std::string> args;
        std::string out;
    };
    const std::vector<Case> cases = {
        {{"--dict-dir", shared_dict_dir(), file},
         file + ": Warning: Line 2 : Data value should be greater than a defined limit : _cell_length_a\n" +
             file +
             ": Warning: Line 4 : Data value is not in dictionary enumeration list : _atom_site_calc_flag\n" +
             file + ": Warning: Line 5 : Created non-standard data item _my_own_item\n" + file +
             ": 0 errors, 3 warnings, 0 remarks\n"},
        // Without dictionaries only the syntax is checked, and unknown names are no news.
        {{"--no-dict", file}, file + ": 0 errors, 0 warnings, 0 remarks\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const CheckRun run = check(c.args);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, c.out);
        EXPECT_EQ(run.err, "");
    }
}

TEST(CheckerDictionaryTest, ListsLoadedDictionariesAndReportsRejectedOnes)
{
    if (!fs::exists(fs::path(shared_dict_dir()) / "cif_core.dic"))
        GTEST_SKIP() << "no core dictionary at " << shared_dict_dir();
    TempDir dir;
    // A definition with a _type no reader accepts: the whole file is rejected.
    dir.file("bad.dic", "data_on_this_dictionary\n_dictionary_name bad.dic\n_dictionary_version 1.0\n"
                        "data_thing\n_name '_thing'\n_type text\n");
    const std::string good = dir.file("good.cif", good_cif);

    CheckRun run = check({"--list-dicts", "--dict-dir", dir.dir().string(), "--dict-dir", shared_dict_dir()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "cif_core.dic 2.4.5 " + shared_dict_dir() + "/cif_core.dic\n");
    EXPECT_EQ(run.err,
              "cifward-check: dictionary rejected: " + dir.path("bad.dic") +
                  "\n  Error: Line 4 : Invalid value for _type 'text' : expected 'numb', 'char' or 'null'\n");

    // Checking goes on with the dictionaries that loaded.
    run = check({"--dict-dir", dir.dir().string(), "--dict-dir", shared_dict_dir(), "-q", good});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("dictionary rejected"), std::string::npos);
    EXPECT_EQ(run.out, good + ": 0 errors, 2 warnings, 0 remarks\n");

    // A directory with no dictionary at all: said so, and the syntax is still checked.
    const fs::path empty = dir.dir() / "empty";
    fs::create_directory(empty);
    run = check({"--dict-dir", empty.string(), "-q", good});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "cifward-check: no dictionary loaded; checking the syntax only\n");
    EXPECT_EQ(run.out, good + ": 0 errors, 0 warnings, 0 remarks\n");
}

TEST(CheckerDictionaryTest, TheBuiltProgramFindsTheDictionaryBesideItself)
{
    if (!fs::exists(fs::path(shared_dict_dir()) / "cif_core.dic"))
        GTEST_SKIP() << "no core dictionary at " << shared_dict_dir() << " to copy beside the program";
    const CheckRun run = shell(std::string(CIFWARD_CHECKER_PATH) + " --list-dicts");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "cif_core.dic 2.4.5 " +
                           (fs::path(CIFWARD_CHECKER_PATH).parent_path() / "dict" / "cif_core.dic").string() +
                           "\n");
}

TEST(CheckerDictionaryTest, MandatoryItemsAreReportedAsRemarks)
{
    TempDir dir;
    const std::string list =
        dir.file("mandatory.txt", "# items a submission needs\ndata_crystal\n_cell_length_a\n"
                                  "_cell_volume\ndata_publication\n_publ_section_title\n");
    const std::string file = dir.file("c.cif", "data_c\n_cell_length_a ?\n_cell_angle_beta 90\n");
    // Without a dictionary no block shows a category, so the first block is checked for the
    // publication list and then for the crystal list.
    CheckRun run = check({"--mandatory", list, file});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file + ": Remark: Line 1 : Data item _publ_section_title not found in block data_c\n" +
                           file + ": Remark: Line 1 : Data item _cell_length_a not set in block data_c\n" +
                           file + ": Remark: Line 1 : Data item _cell_volume not found in block data_c\n" +
                           file + ": 0 errors, 0 warnings, 3 remarks\n");

    run = check({"--mandatory", dir.path("none.txt"), file});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err,
              "cifward-check: cannot read the mandatory items file '" + dir.path("none.txt") + "'\n");
    EXPECT_EQ(run.out, "");
}
