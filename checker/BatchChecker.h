#ifndef CIFWARD_BATCHCHECKER_H
#define CIFWARD_BATCHCHECKER_H

#include "CheckerOptions.h"

#include <iosfwd>
#include <memory>
#include <string>

// Runs cifward-check: reads each file, reports its findings and writes the document back when
// asked. Standard input, output and error are passed in so that the whole program can be run
// inside a test.
class BatchChecker {
public:
    enum ExitStatus { Clean = 0, HasErrors = 1, UsageOrReadFailure = 2 };

    BatchChecker(const CheckerOptions& options, std::istream& in, std::ostream& out, std::ostream& err);
    int run();

    // Parses the command line and runs; what main does.
    static int main(int argc, const char* const* argv, std::istream& in, std::ostream& out,
                    std::ostream& err);

private:
    struct FileReport;
    // Opens `path` for reading, or takes standard input for "-"; null with a message if it can't.
    std::unique_ptr<std::istream> open(const std::string& path);
    void report_text(std::ostream& report, const FileReport& file) const;
    void report_json(std::ostream& report, const FileReport& file, bool first) const;
    bool write_back(const class Cif& cif, const std::string& input_path);
    void fail(const std::string& message);

    const CheckerOptions& options_;
    std::istream& in_;
    std::ostream& out_;
    std::ostream& err_;
    int status_ = Clean;
};

#endif
