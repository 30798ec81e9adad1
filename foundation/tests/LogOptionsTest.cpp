#include "LogOptions.h"

#include "LogTestSupport.h"
#include "Logger.h"

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// A command line as main() receives it, built from a program name and the given arguments (a
// null entry stands for a null argument). The slot after the last argument holds a non-null
// marker, so that the terminator written by the scanner can be seen; should the scanner wrongly
// take it as a log file name, the open fails rather than leaving a file behind.
class CommandLine {
public:
    explicit CommandLine(const std::vector<const char*>& arguments,
                         const std::vector<std::pair<std::string, std::string>>& substitutions = {})
    {
        argv_.push_back(store("cifward"));
        for (const char* argument : arguments) {
            if (argument == nullptr) {
                argv_.push_back(nullptr);
                continue;
            }
            std::string text = argument;
            for (const auto& [from, to] : substitutions)
                text = replaceAll(text, from, to);
            argv_.push_back(store(text));
        }
        argc = static_cast<int>(argv_.size());
        argv_.push_back(store("/dev/null/past-the-end"));
        programName_ = argv_[0];
    }

    int argc = 0;
    char** argv() { return argv_.data(); }
    const char* programName() const { return programName_; }

    // argv[1] up to argv[argc - 1], a null argument shown as "(null)".
    std::vector<std::string> remaining() const
    {
        std::vector<std::string> result;
        for (int i = 1; i < argc; ++i)
            result.push_back(argv_[i] != nullptr ? argv_[i] : "(null)");
        return result;
    }

private:
    char* store(const std::string& text)
    {
        texts_.push_back(text);
        return texts_.back().data();
    }

    std::deque<std::string> texts_; // a deque keeps the texts in place as it grows
    std::vector<char*> argv_;
    const char* programName_ = nullptr;
};

// A fresh directory for log files, removed afterwards; empty if it could not be made.
struct TemporaryDirectory {
    fs::path path = [] {
        std::string pattern = testing::TempDir() + "cifward-log-XXXXXX";
        return mkdtemp(pattern.data()) != nullptr ? fs::path(pattern) : fs::path();
    }();
    ~TemporaryDirectory()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
};

std::string fileText(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class LogOptionsTest : public LogStateTest {};

const char* const missingValueWarning = "WARNING: Invalid or missing numeric value for option '-loglevel'\n";
const char* const badFileWarning = "WARNING: Invalid or missing filename for option '-logfile'\n";

struct ScanCase {
    const char* name;
    std::vector<const char*> arguments;
    int initialLevel;
    int expectedLevel;
    std::vector<std::string> expectedRemaining;
    std::string expectedStderr;
};

// The log channels stay on standard error here; "{missing}" stands for a path in a directory
// that does not exist. With no arguments the scan only writes the terminator, into a slot that
// held a marker.
TEST_F(LogOptionsTest, ConsumesLogOptionsAndKeepsTheRest)
{
    const ScanCase cases[] = {
        {"no arguments", {}, 0, 0, {}, ""},
        {"file names and unknown options kept in order",
         {"a.cif", "-stereo", "-logx", "--log", "-LOG", "-", "b.cif", "-normal-color"},
         0,
         0,
         {"a.cif", "-stereo", "-logx", "--log", "-LOG", "-", "b.cif", "-normal-color"},
         ""},
        {"null argument kept", {"-log", nullptr, "a.cif"}, 0, 1, {"(null)", "a.cif"}, ""},
        {"-log raises the level by one each time", {"-log", "x.cif", "-log"}, 0, 2, {"x.cif"}, ""},
        {"-log adds to the level already set", {"-log"}, 4, 5, {}, ""},
        {"-log then -loglevel 3", {"-log", "-loglevel", "3"}, 0, 3, {}, ""},
        {"-loglevel 3 then -log", {"-loglevel", "3", "-log"}, 0, 4, {}, ""},
        {"-loglevel with text that is no number", {"-loglevel", "high", "a.cif"}, 2, 0, {"a.cif"}, ""},
        {"-loglevel reads the leading digits", {"-loglevel", "12abc"}, 0, 12, {}, ""},
        {"-loglevel takes -log as its value", {"-loglevel", "-log", "a.cif"}, 2, 0, {"a.cif"}, ""},
        {"-loglevel takes a negative value", {"-loglevel", "-2"}, 0, -2, {}, ""},
        {"-loglevel as the last argument", {"a.cif", "-loglevel"}, 2, 2, {"a.cif"}, missingValueWarning},
        {"-loglevel with an empty value", {"-loglevel", "", "b.cif"}, 2, 2, {"b.cif"}, missingValueWarning},
        {"-logfile as the last argument", {"a.cif", "-logfile"}, 0, 0, {"a.cif"}, badFileWarning},
        {"-logfile with an empty value", {"-logfile", "", "a.cif"}, 0, 0, {"a.cif"}, badFileWarning},
        {"-logfile that cannot be created",
         {"-logfile", "{missing}", "a.cif"},
         0,
         0,
         {"a.cif"},
         std::string("WARNING: Could not create log file '{missing}'\n") + badFileWarning},
        {"warnings in command-line order",
         {"-logfile", "", "-loglevel", "", "-log"},
         0,
         1,
         {},
         std::string(badFileWarning) + missingValueWarning},
    };

    TemporaryDirectory directory;
    ASSERT_FALSE(directory.path.empty());
    const std::string missing = (directory.path / "absent" / "run.log").string();

    for (const ScanCase& c : cases) {
        SCOPED_TRACE(c.name);
        resetLog();
        setLogLevel(c.initialLevel);
        CommandLine line(c.arguments, {{"{missing}", missing}});
        const char* programName = line.programName();

        StderrCapture captured;
        processLogOptions(line.argc, line.argv());
        const std::string printed = captured.finish();

        EXPECT_EQ(line.remaining(), c.expectedRemaining);
        EXPECT_EQ(line.argv()[line.argc], nullptr);
        EXPECT_EQ(line.argv()[0], programName);
        EXPECT_EQ(logLevel(), c.expectedLevel);
        EXPECT_EQ(printed, replaceAll(c.expectedStderr, "{missing}", missing));
        EXPECT_EQ(errorStream(), stderr);
        EXPECT_EQ(warningStream(), stderr);
        EXPECT_EQ(debugStream(), stderr);
    }
}

struct LogFileCase {
    const char* name;
    std::vector<const char*> arguments;
    const char* earlierContent; // null: no file before the run
    int expectedLevel;
    std::vector<std::string> expectedRemaining;
    std::string expectedStderr;
    std::string expectedFile;
};

// "{log}" stands for the log file's path, "{missing}" for one that cannot be created. After the
// scan each case logs one debug line, one error and one warning.
TEST_F(LogOptionsTest, LogFileReceivesAllChannels)
{
    const std::string laterLines = "ERROR: 2 errors\nWARNING: line 81 too long\n";
    const LogFileCase cases[] = {
        {"debug, error and warning go to the file",
         {"-log", "-logfile", "{log}", "a.cif"},
         nullptr,
         1,
         {"a.cif"},
         "",
         "DEBUG 1: searching docs\n" + laterLines},
        {"an earlier file is replaced", {"-logfile", "{log}"}, "old run\nold run\n", 0, {}, "", laterLines},
        {"warnings before -logfile stay on standard error",
         {"-loglevel", "", "-logfile", "{log}", "-loglevel"},
         nullptr,
         0,
         {},
         missingValueWarning,
         missingValueWarning + laterLines},
        {"a failed second -logfile reports into the first",
         {"-logfile", "{log}", "-logfile", "{missing}"},
         nullptr,
         0,
         {},
         "",
         "WARNING: Could not create log file '{missing}'\n" + std::string(badFileWarning) + laterLines},
    };

    for (const LogFileCase& c : cases) {
        SCOPED_TRACE(c.name);
        resetLog();
        TemporaryDirectory directory;
        ASSERT_FALSE(directory.path.empty());
        const std::string log = (directory.path / "run.log").string();
        const std::string missing = (directory.path / "absent" / "run.log").string();
        if (c.earlierContent != nullptr)
            std::ofstream(log) << c.earlierContent;
        CommandLine line(c.arguments, {{"{log}", log}, {"{missing}", missing}});

        StderrCapture captured;
        processLogOptions(line.argc, line.argv());
        FILE* file = debugStream();
        logDebug(1, "searching %s", "docs");
        logError("%d errors", 2);
        logWarning("line %d too long", 81);
        const std::string printed = captured.finish();

        EXPECT_EQ(line.remaining(), c.expectedRemaining);
        EXPECT_EQ(line.argv()[line.argc], nullptr);
        EXPECT_EQ(logLevel(), c.expectedLevel);
        EXPECT_EQ(printed, c.expectedStderr);
        ASSERT_NE(file, nullptr);
        ASSERT_NE(file, stderr);
        EXPECT_EQ(errorStream(), file);
        EXPECT_EQ(warningStream(), file);

        // The program leaves the file open for the whole run; the test must close it itself.
        resetLog();
        std::fclose(file);
        EXPECT_EQ(fileText(log), replaceAll(c.expectedFile, "{missing}", missing));
    }
}

} // namespace
