#ifndef CIFWARD_CHECKEROPTIONS_H
#define CIFWARD_CHECKEROPTIONS_H

#include <string>
#include <vector>

// What the command line of cifward-check asked for.
struct CheckerOptions {
    enum class Format { Text, Json, JsonLines };

    std::vector<std::string> files;
    std::string files_from; // a file listing more paths, one a line; "-": standard input
    Format format = Format::Text;
    unsigned line_limit = 80;
    unsigned jobs = 1; // files checked at once; 0 on the command line means one per core
    bool quiet = false;
    bool use_dictionaries = true;
    bool list_dictionaries = false;
    std::vector<std::string> dictionary_directories; // empty: the loader's own search
    std::string mandatory_file;
    bool help = false;
    bool version = false;
    std::string output;     // empty: no write-back; "-": standard output
    bool structure = false; // report the structure of each block instead of the findings

    // Fills `options` from argv; on a usage error gives false with a one-line `error`.
    static bool parse(int argc, const char* const* argv, CheckerOptions& options, std::string& error);
    static std::string usage();
};

#endif
