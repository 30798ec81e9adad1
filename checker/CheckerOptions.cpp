#include "CheckerOptions.h"

#include <cerrno>
#include <cstdlib>

namespace {

bool parse_line_limit(const std::string& text, unsigned& out)
{
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    errno = 0;
    const unsigned long value = std::strtoul(text.c_str(), nullptr, 10);
    if (errno != 0 || value == 0 || value > 1000000)
        return false;
    out = static_cast<unsigned>(value);
    return true;
}

} // namespace

std::string CheckerOptions::usage()
{
    return "Usage: cifward-check [options] FILE...\n"
           "Checks CIF files and prints one line per finding, then a summary line per file.\n"
           "A FILE of '-' reads standard input.\n"
           "\n"
           "Options:\n"
           "  --format text|json  output form (default text); json prints one document\n"
           "  --line-limit N      warn about lines longer than N characters (default 80)\n"
           "  -q, --quiet         print only the summary line of each file\n"
           "  -o, --output PATH   write the document back through the CIF writer to PATH\n"
           "                      ('-' for standard output, when the report goes to standard\n"
           "                      error); one input file only; never the input itself\n"
           "  --dict-dir DIR      load the dictionaries (*.dic) of DIR instead of those found\n"
           "                      beside the program; repeatable, searched in the order given\n"
           "  --no-dict           check the syntax only, without dictionaries\n"
           "  --list-dicts        list the dictionaries loaded (name, version, path) and the\n"
           "                      findings of any that was rejected, then exit\n"
           "  --mandatory FILE    after reading, report the data items that FILE lists and a\n"
           "                      file lacks (lines 'data_publication', 'data_crystal' or\n"
           "                      'data_all', each followed by data names)\n"
           "  --structure         report what each block with atom sites describes: the space\n"
           "                      group, the cell, the atoms, bonds and molecules, and the\n"
           "                      moiety formula computed beside the file's own\n"
           "  -h, --help          show this help and exit\n"
           "  --version           show the version and exit\n"
           "\n"
           "Exit status: 0 when no file has an error, 1 when one has,\n"
           "2 for a usage error or a file that cannot be read.\n";
}

bool CheckerOptions::parse(int argc, const char* const* argv, CheckerOptions& options, std::string& error)
{
    bool options_ended = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (options_ended || arg == "-" || arg.empty() || arg[0] != '-') {
            options.files.push_back(arg);
            continue;
        }
        if (arg == "--") {
            options_ended = true;
            continue;
        }
        std::string value;
        bool has_inline_value = false;
        if (arg.compare(0, 2, "--") == 0) {
            const std::string::size_type eq = arg.find('=');
            if (eq != std::string::npos) {
                value = arg.substr(eq + 1);
                arg = arg.substr(0, eq);
                has_inline_value = true;
            }
        }
        auto take_value = [&](const char* name) {
            if (has_inline_value)
                return true;
            if (i + 1 >= argc) {
                error = std::string("option '") + name + "' needs a value";
                return false;
            }
            value = argv[++i];
            return true;
        };
        auto no_value = [&]() {
            if (has_inline_value)
                error = "option '" + arg + "' takes no value";
            return !has_inline_value;
        };

        if (arg == "-h" || arg == "--help") {
            if (!no_value())
                return false;
            options.help = true;
        } else if (arg == "--version") {
            if (!no_value())
                return false;
            options.version = true;
        } else if (arg == "-q" || arg == "--quiet") {
            if (!no_value())
                return false;
            options.quiet = true;
        } else if (arg == "--no-dict") {
            if (!no_value())
                return false;
            options.use_dictionaries = false;
        } else if (arg == "--structure") {
            if (!no_value())
                return false;
            options.structure = true;
        } else if (arg == "--list-dicts") {
            if (!no_value())
                return false;
            options.list_dictionaries = true;
        } else if (arg == "--dict-dir") {
            if (!take_value("--dict-dir"))
                return false;
            if (value.empty()) {
                error = "option '--dict-dir' needs a directory";
                return false;
            }
            options.dictionary_directories.push_back(value);
        } else if (arg == "--mandatory") {
            if (!take_value("--mandatory"))
                return false;
            if (value.empty()) {
                error = "option '--mandatory' needs a file";
                return false;
            }
            options.mandatory_file = value;
        } else if (arg == "--format") {
            if (!take_value("--format"))
                return false;
            if (value == "text") {
                options.format = Format::Text;
            } else if (value == "json") {
                options.format = Format::Json;
            } else {
                error = "unknown format '" + value + "' (use text or json)";
                return false;
            }
        } else if (arg == "--line-limit") {
            if (!take_value("--line-limit"))
                return false;
            if (!parse_line_limit(value, options.line_limit)) {
                error = "invalid line limit '" + value + "' (a whole number from 1 to 1000000)";
                return false;
            }
        } else if (arg == "-o" || arg == "--output") {
            if (!take_value(arg.c_str()))
                return false;
            if (value.empty()) {
                error = "option '" + arg + "' needs a path";
                return false;
            }
            options.output = value;
        } else {
            error = "unknown option '" + arg + "'";
            return false;
        }
    }
    if (!options.use_dictionaries && (options.list_dictionaries || !options.dictionary_directories.empty())) {
        error = "--no-dict cannot be combined with --dict-dir or --list-dicts";
        return false;
    }
    if (options.help || options.version || options.list_dictionaries)
        return true;
    if (options.files.empty()) {
        error = "no input file (use '-' for standard input)";
        return false;
    }
    if (!options.output.empty() && options.files.size() != 1) {
        error = "--output takes exactly one input file";
        return false;
    }
    return true;
}
