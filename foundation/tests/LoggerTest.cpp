#include "Logger.h"

#include "LogTestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

// ctest runs each test in a process of its own, so this sees the state the program starts with.
TEST(LoggerStart, BeginsQuietAtLevelZeroOnStandardError)
{
    EXPECT_EQ(logLevel(), 0);
    EXPECT_EQ(errorStream(), stderr);
    EXPECT_EQ(warningStream(), stderr);
    EXPECT_EQ(debugStream(), stderr);
}

struct MessageCase {
    const char* name;
    int level;
    bool errorOn;
    bool warningOn;
    bool debugOn;
    std::function<void()> emit;
    std::string expectedError;
    std::string expectedWarning;
    std::string expectedDebug;
};

class LoggerTest : public LogStateTest {};

TEST_F(LoggerTest, WritesEachChannelToItsOwnStream)
{
    const std::string longText(5000, 'x');
    const MessageCase cases[] = {
        {"error line", 0, true, true, true, [] { logError("cannot open %s (%d)", "a.cif", 2); },
         "ERROR: cannot open a.cif (2)\n", "", ""},
        {"warning line", 0, true, true, true, [] { logWarning("%d items unknown", 3); }, "",
         "WARNING: 3 items unknown\n", ""},
        {"debug above the level is quiet", 0, true, true, true, [] { logDebug(1, "searching %s", "docs"); },
         "", "", ""},
        {"debug at the level", 1, true, true, true, [] { logDebug(1, "searching %s", "docs"); }, "", "",
         "DEBUG 1: searching docs\n"},
        {"debug below the level shows its own level", 3, true, true, true,
         [] { logDebug(2, "found %s", "docs"); }, "", "", "DEBUG 2: found docs\n"},
        {"only the messages within the level, in order", 1, true, true, true,
         [] {
             logDebug(1, "a");
             logError("b");
             logDebug(2, "c");
             logDebug(1, "d");
         },
         "ERROR: b\n", "", "DEBUG 1: a\nDEBUG 1: d\n"},
        {"percent signs in an argument are printed as they are", 0, true, true, true,
         [] { logError("%s", "100%d done"); }, "ERROR: 100%d done\n", "", ""},
        {"long text is not cut", 0, true, true, true, [&longText] { logWarning("%s", longText.c_str()); }, "",
         "WARNING: " + longText + "\n", ""},
        {"null error stream silences errors only", 1, false, true, true,
         [] {
             logError("lost");
             logWarning("kept");
             logDebug(1, "kept");
         },
         "", "WARNING: kept\n", "DEBUG 1: kept\n"},
        {"null warning stream silences warnings only", 0, true, false, true,
         [] {
             logWarning("lost");
             logError("kept");
         },
         "ERROR: kept\n", "", ""},
        {"null debug stream silences debug at any level", 5, true, true, false,
         [] {
             logDebug(1, "lost");
             logError("kept");
         },
         "ERROR: kept\n", "", ""},
    };

    for (const MessageCase& c : cases) {
        SCOPED_TRACE(c.name);
        CapturedStream error, warning, debug;
        setErrorStream(c.errorOn ? error.stream() : nullptr);
        setWarningStream(c.warningOn ? warning.stream() : nullptr);
        setDebugStream(c.debugOn ? debug.stream() : nullptr);
        setLogLevel(c.level);

        c.emit();

        EXPECT_EQ(error.text(), c.expectedError);
        EXPECT_EQ(warning.text(), c.expectedWarning);
        EXPECT_EQ(debug.text(), c.expectedDebug);
        resetLog();
    }
}

} // namespace
