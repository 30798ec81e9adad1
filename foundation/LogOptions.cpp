#include "LogOptions.h"

#include "Logger.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The argument after an option, or null when the option came last. The value is taken whatever
// it looks like, so "-loglevel -log" uses "-log" as the level.
const char* takeValue(int& index, int argc, char** argv)
{
    if (index + 1 >= argc)
        return nullptr;
    return argv[++index];
}

bool isEmpty(const char* text)
{
    return text == nullptr || text[0] == '\0';
}

} // namespace

void processLogOptions(int& argc, char** argv)
{
    if (argc < 2) {
        argv[argc] = nullptr;
        return;
    }

    int kept = 1;
    for (int index = 1; index < argc; ++index) {
        char* argument = argv[index];
        if (argument == nullptr || argument[0] != '-') {
            argv[kept++] = argument;
        } else if (std::strcmp(argument, "-log") == 0) {
            setLogLevel(logLevel() + 1);
        } else if (std::strcmp(argument, "-loglevel") == 0) {
            const char* value = takeValue(index, argc, argv);
            if (isEmpty(value))
                logWarning("Invalid or missing numeric value for option '-loglevel'");
            else
                setLogLevel(std::atoi(value));
        } else if (std::strcmp(argument, "-logfile") == 0) {
            const char* path = takeValue(index, argc, argv);
            if (!isEmpty(path)) {
                // The file stays open for the rest of the process; nothing closes it.
                if (FILE* file = std::fopen(path, "w")) {
                    setDebugStream(file);
                    setErrorStream(file);
                    setWarningStream(file);
                    continue;
                }
                logWarning("Could not create log file '%s'", path);
            }
            // Also given after a failed open, so the user sees which option was at fault.
            logWarning("Invalid or missing filename for option '-logfile'");
        } else {
            argv[kept++] = argument;
        }
    }
    argc = kept;
    argv[argc] = nullptr;
}
