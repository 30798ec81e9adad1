#ifndef CIFWARD_LOGTESTSUPPORT_H
#define CIFWARD_LOGTESTSUPPORT_H

#include "Logger.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

// Everything written to a C stream so far, from its start; the stream is left at its end so
// that later writes append.
inline std::string streamText(FILE* stream)
{
    std::fflush(stream);
    std::rewind(stream);
    std::string text;
    char buffer[4096];
    while (std::size_t count = std::fread(buffer, 1, sizeof buffer, stream))
        text.append(buffer, count);
    std::fseek(stream, 0, SEEK_END);
    return text;
}

// A temporary file to point a log channel at.
class CapturedStream {
public:
    CapturedStream() : file_(std::tmpfile()) {}
    ~CapturedStream() { std::fclose(file_); }
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;

    FILE* stream() const { return file_; }
    std::string text() const { return streamText(file_); }

private:
    FILE* file_;
};

// Sends the process's standard error into a temporary file until finish(), so that what the log
// prints through stderr itself can be read back.
class StderrCapture {
public:
    StderrCapture() : file_(std::tmpfile())
    {
        std::fflush(stderr);
        saved_ = dup(fileno(stderr));
        dup2(fileno(file_), fileno(stderr));
    }
    ~StderrCapture()
    {
        restore();
        std::fclose(file_);
    }
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    std::string finish()
    {
        restore();
        return streamText(file_);
    }

private:
    void restore()
    {
        if (saved_ < 0)
            return;
        std::fflush(stderr);
        dup2(saved_, fileno(stderr));
        close(saved_);
        saved_ = -1;
    }

    FILE* file_;
    int saved_ = -1;
};

// Every test starts from, and leaves behind, the state the program starts with.
class LogStateTest : public testing::Test {
protected:
    void SetUp() override { resetLog(); }
    void TearDown() override { resetLog(); }

    static void resetLog()
    {
        setLogLevel(0);
        setErrorStream(stderr);
        setWarningStream(stderr);
        setDebugStream(stderr);
    }
};

#endif
