#include "Logger.h"

#include <cstdarg>

namespace {

int currentLevel = 0;
FILE* currentErrorStream = stderr;
FILE* currentWarningStream = stderr;
FILE* currentDebugStream = stderr;

void writeLine(FILE* stream, const char* format, va_list args)
{
    std::vfprintf(stream, format, args);
    std::fputc('\n', stream);
}

} // namespace

void logError(const char* format, ...)
{
    if (currentErrorStream == nullptr)
        return;
    std::fputs("ERROR: ", currentErrorStream);
    va_list args;
    va_start(args, format);
    writeLine(currentErrorStream, format, args);
    va_end(args);
}

void logWarning(const char* format, ...)
{
    if (currentWarningStream == nullptr)
        return;
    std::fputs("WARNING: ", currentWarningStream);
    va_list args;
    va_start(args, format);
    writeLine(currentWarningStream, format, args);
    va_end(args);
}

void logDebug(int level, const char* format, ...)
{
    // Debug calls sit on the dictionary search and help paths and almost never print, so the
    // decision comes before any argument handling.
    if (currentDebugStream == nullptr || level > currentLevel)
        return;
    std::fprintf(currentDebugStream, "DEBUG %d: ", level);
    va_list args;
    va_start(args, format);
    writeLine(currentDebugStream, format, args);
    va_end(args);
}

void setErrorStream(FILE* stream)
{
    currentErrorStream = stream;
}

void setWarningStream(FILE* stream)
{
    currentWarningStream = stream;
}

void setDebugStream(FILE* stream)
{
    currentDebugStream = stream;
}

FILE* errorStream()
{
    return currentErrorStream;
}

FILE* warningStream()
{
    return currentWarningStream;
}

FILE* debugStream()
{
    return currentDebugStream;
}

int logLevel()
{
    return currentLevel;
}

void setLogLevel(int level)
{
    currentLevel = level;
}
