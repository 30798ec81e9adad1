#ifndef CIFWARD_LOGGER_H
#define CIFWARD_LOGGER_H

#include <cstdio>

// The program's log: three channels (error, warning, debug), each written to its own C stream,
// with process-wide state so that it works before any toolkit object exists. A null stream
// silences its channel. Streams are borrowed: the log never closes or flushes them.

#if defined(__GNUC__) || defined(__clang__)
#define CIFWARD_PRINTF_FORMAT(formatIndex, firstArg) __attribute__((format(printf, formatIndex, firstArg)))
#else
#define CIFWARD_PRINTF_FORMAT(formatIndex, firstArg)
#endif

// "ERROR: " + the formatted text + a line end, on the error stream.
void logError(const char* format, ...) CIFWARD_PRINTF_FORMAT(1, 2);

// "WARNING: " + the formatted text + a line end, on the warning stream.
void logWarning(const char* format, ...) CIFWARD_PRINTF_FORMAT(1, 2);

// "DEBUG <level>: " + the formatted text + a line end, on the debug stream, when level is not
// above logLevel(). Cheap when it prints nothing, so it may sit on busy paths.
void logDebug(int level, const char* format, ...) CIFWARD_PRINTF_FORMAT(2, 3);

void setErrorStream(FILE* stream);
void setWarningStream(FILE* stream);
void setDebugStream(FILE* stream);
FILE* errorStream();
FILE* warningStream();
FILE* debugStream();

// The highest debug level that is printed; 0 at start, so level-1 messages stay quiet.
int logLevel();
void setLogLevel(int level);

#endif
