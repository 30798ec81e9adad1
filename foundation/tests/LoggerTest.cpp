#include "Logger.h"

#include "LogOptions.h"

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// Everything written to a temporary C stream.
struct Captured {
    FILE* file = std::tmpfile();
    ~Captured() { std::fclose(file); }
    std::string text() const
    {
        std::fflush(file);
        std::rewind(file);
        std::string out;
        for (int c; (c = std::fgetc(file)) != EOF;)
            out += static_cast<char>(c);
        return out;
    }
};

// Standard error sent into a Captured until finish(): the options report through it.
struct StderrCapture {
    Captured into;
    int saved = dup(fileno(stderr));
    StderrCapture() { std::fflush(stderr), dup2(fileno(into.file), fileno(stderr)); }
    std::string finish()
    {
        std::fflush(stderr);
        dup2(saved, fileno(stderr));
        close(saved);
        return into.text();
    }
};

// Every test starts from, and leaves behind, the state the program starts with.
class Log : public testing::Test {
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset()
    {
        setLogLevel(0);
        setErrorStream(stderr);
        setWarningStream(stderr);
        setDebugStream(stderr);
    }
};

TEST_F(Log, EachChannelWritesItsOwnStreamWithinTheLevel)
{
    struct Case {
        int level;
        bool error_on, debug_on;
        std::function<void()> emit;
        const char* error; // then "|" and the warning, "|" and the debug text
    };
    const std::vector<Case> cases = {
        {0, true, true, [] { logError("cannot open %s (%d)", "a.cif", 2); },
         "ERROR: cannot open a.cif (2)\n||"},
        {0, true, true, [] { logWarning("%s", "100%d done"); }, "|WARNING: 100%d done\n|"},
        {3, true, true, [] { logDebug(2, "found %s", "docs"); }, "||DEBUG 2: found docs\n"},
        {1, false, true, [] { logError("lost"), logDebug(1, "kept"); }, "||DEBUG 1: kept\n"},
        {5, true, false, [] { logDebug(1, "lost"), logError("kept"); }, "ERROR: kept\n||"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.error);
        Captured error, warning, debug;
        setErrorStream(c.error_on ? error.file : nullptr);
        setWarningStream(warning.file);
        setDebugStream(c.debug_on ? debug.file : nullptr);
        setLogLevel(c.level);
        c.emit();
        EXPECT_EQ(error.text() + "|" + warning.text() + "|" + debug.text(), c.error);
        reset();
    }
}

// The options are taken out of the command line in their order, the rest kept; "{dir}" stands for
// a fresh directory, where "{dir}/run.log" can be made and "{dir}/no/run.log" cannot.
TEST_F(Log, OptionsAreConsumedInOrderAndTheRestKept)
{
    const std::string level = "WARNING: Invalid or missing numeric value for option '-loglevel'\n",
                      file = "WARNING: Invalid or missing filename for option '-logfile'\n";
    struct Case {
        std::vector<const char*> arguments;
        int level;
        std::string kept, warnings, log; // the log: what the file holds after one more error
    };
    const std::vector<Case> cases = {
        {{}, 0, "", "", ""},
        {{"a.cif", "-logx", "--log", "-", "-log", "b.cif", "-log"}, 2, "a.cif -logx --log - b.cif", "", ""},
        {{"-log", "-loglevel", "12abc", "a.cif"}, 12, "a.cif", "", ""},
        {{"-logfile", "", "-loglevel", "", "-log"}, 1, "", file + level, ""},
        {{"-logfile", "{dir}/no/run.log", "x"},
         0,
         "x",
         "WARNING: Could not create log file '{dir}/no/run.log'\n" + file,
         ""},
        {{"-loglevel", "", "-logfile", "{dir}/run.log", "-logfile"}, 0, "", level, file + "ERROR: after\n"},
    };
    char dir_template[] = "/tmp/cifward-log-XXXXXX";
    const std::string dir = mkdtemp(dir_template);
    const auto expand = [&dir](std::string text) {
        for (std::size_t at; (at = text.find("{dir}")) != std::string::npos;)
            text.replace(at, 5, dir);
        return text;
    };
    for (const Case& c : cases) {
        reset();
        std::deque<std::string> texts = {"cifward"};
        std::vector<char*> argv = {texts.back().data()};
        std::string line;
        for (const char* argument : c.arguments) {
            argv.push_back(texts.emplace_back(expand(argument)).data());
            line += " " + texts.back();
        }
        SCOPED_TRACE(line);
        argv.push_back(texts.emplace_back("past-the-end").data()); // must become null
        int argc = static_cast<int>(argv.size()) - 1;
        StderrCapture captured;
        processLogOptions(argc, argv.data());
        FILE* log = errorStream();
        logError("after");
        const std::string printed = captured.finish();
        std::string kept;
        for (int i = 1; i < argc; ++i)
            kept += (i > 1 ? " " : "") + std::string(argv[i]);
        EXPECT_EQ(kept, c.kept);
        EXPECT_EQ(argv[argc], nullptr);
        EXPECT_EQ(logLevel(), c.level);
        EXPECT_EQ(printed, expand(c.warnings) + (c.log.empty() ? "ERROR: after\n" : ""));
        EXPECT_TRUE(warningStream() == log && debugStream() == log);
        if (log != stderr) {
            reset();
            std::fclose(log);
            std::ifstream in(dir + "/run.log");
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), c.log);
        }
    }
    std::filesystem::remove_all(dir);
}

} // namespace
