#ifndef CIFWARD_BATCHCHECKER_H
#define CIFWARD_BATCHCHECKER_H

#include "CheckerOptions.h"
#include "CifDictionary.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

// Runs cifward-check: reads each file, reports its findings and writes the document back when
// asked. Standard input, output and error are passed in so that the whole program can be run
// inside a test.
class BatchChecker {
public:
    enum ExitStatus { Clean = 0, HasErrors = 1, UsageOrReadFailure = 2 };

    // `program_directory` is where the dictionary search beside the program starts.
    BatchChecker(const CheckerOptions& options, const std::string& program_directory, std::istream& in,
                 std::ostream& out, std::ostream& err);
    int run();

    // Parses the command line and runs; what main does.
    static int main(int argc, const char* const* argv, std::istream& in, std::ostream& out,
                    std::ostream& err);
    // The directory of the running program.
    static std::string program_directory(const char* argv0);

private:
    struct FileReport;
    // Opens `path` for reading, or takes standard input for "-"; null with a message if it can't.
    std::unique_ptr<std::istream> open(const std::string& path);
    void report_text(std::ostream& report, const FileReport& file) const;
    void report_json(std::ostream& report, const FileReport& file, bool first) const;
    bool write_back(const class Cif& cif, const std::string& input_path);
    void fail(const std::string& message);
    // Loads the dictionaries the options ask for; false when none is in use.
    bool load_dictionaries();
    int list_dictionaries();

    const CheckerOptions& options_;
    std::string program_directory_;
    HCifDictionary dictionary_;
    std::vector<std::string> dictionary_lines_; // name, version and path of each one loaded
    std::istream& in_;
    std::ostream& out_;
    std::ostream& err_;
    int status_ = Clean;
};

#endif
