#ifndef CIFWARD_BATCHCHECKER_H
#define CIFWARD_BATCHCHECKER_H

#include "CheckerOptions.h"
#include "CifDictionary.h"
#include "CifMandatoryItems.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

class Cif;
class ProgressLine;

// Runs cifward-check: reads each file, reports its findings and writes the document back when
// asked. Files may be checked several at a time; each file's report is made whole and let out in
// the order of the files, so the output does not depend on how many were checked at once.
// Standard input, output and error are passed in so that the whole program can be run inside a
// test.
class BatchChecker {
public:
    enum ExitStatus { Clean = 0, HasErrors = 1, UsageOrReadFailure = 2 };

    // `program_directory` is where the dictionary search beside the program starts; with
    // `show_progress`, standard error is a terminal that can take a progress line.
    BatchChecker(const CheckerOptions& options, const std::string& program_directory, std::istream& in,
                 std::ostream& out, std::ostream& err, bool show_progress = false);
    ~BatchChecker();
    int run();

    // Parses the command line and runs; what main does.
    static int main(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err,
                    bool err_is_terminal = false);
    // The directory of the running program.
    static std::string program_directory(const char* argv0);

private:
    // What checking a file needs; each thread that checks has its own, since the engine's
    // handles are counted without locks.
    struct Checking {
        HCifDictionary dictionary;
        bool with_dictionaries = false;
    };
    // One file's part of the output, made whole before any of it is let out.
    struct FileResult {
        std::string report;   // for the report stream
        std::string messages; // for standard error
        int status = Clean;
    };

    std::vector<std::string> gather_paths();
    // Loads the dictionaries the options ask for; with `report`, also tells what was loaded and
    // rejected.
    Checking load_dictionaries(bool report);
    int list_dictionaries();
    FileResult check_file(const Checking& checking, std::size_t index, std::unique_ptr<Cif>* keep);
    void report_text(std::string& report, const std::string& name, const Cif& cif) const;
    void report_json(std::string& report, const std::string& name, const Cif& cif, bool one_line) const;
    void check_all(const std::vector<std::string>& paths, const Checking& checking);
    // Lets out one file's result; false once the report can no longer be written.
    bool put_out(const FileResult& result);
    void report_failed();
    bool write_back(const Cif& cif, const std::string& input_path);
    void fail(const std::string& message);

    const CheckerOptions& options_;
    std::string program_directory_;
    std::istream& in_;
    std::ostream& out_;
    std::ostream& err_;
    std::ostream& report_; // standard output, or standard error when the document goes there
    bool show_progress_;
    std::unique_ptr<ProgressLine> progress_;
    std::vector<std::string> dictionary_lines_; // name, version and path of each one loaded
    CifMandatoryItems mandatory_;
    std::vector<std::string> paths_;
    std::string stdin_text_; // standard input, for the first file named '-'
    std::size_t first_stdin_ = static_cast<std::size_t>(-1);
    std::size_t emitted_ = 0;
    bool report_failed_ = false;
    int status_ = Clean;
};

#endif
