#include "CheckerOptions.h"

#include <cerrno>
#include <cstdlib>
#include <thread>

namespace {

// A whole number from `low` to `high`, all of `text`.
bool parse_number(const std::string& text, unsigned long low, unsigned long high, unsigned& out)
{
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    errno = 0;
    const unsigned long value = std::strtoul(text.c_str(), nullptr, 10);
    if (errno != 0 || value < low || value > high)
        return false;
    out = static_cast<unsigned>(value);
    return true;
}

using Apply = bool (*)(CheckerOptions& options, const std::string& value, std::string& error);

// One option: its short and long names, the name of its value (none for a switch), its lines of
// help, and what it does. The usage text is made from this table, so an option is one row.
struct Option {
    const char* short_name;
    const char* long_name;
    const char* value_name;
    const char* help;
    Apply apply;
};

const Option option_table[] = {
    {nullptr, "--format", "text|json|jsonl",
     "output form (default text); json prints one document,\n"
     "jsonl one JSON object per file on a line of its own",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (v == "text")
             o.format = CheckerOptions::Format::Text;
         else if (v == "json")
             o.format = CheckerOptions::Format::Json;
         else if (v == "jsonl")
             o.format = CheckerOptions::Format::JsonLines;
         else
             error = "unknown format '" + v + "' (use text, json or jsonl)";
         return error.empty();
     }},
    {nullptr, "--line-limit", "N", "warn about lines longer than N characters (default 80)",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (!parse_number(v, 1, 1000000, o.line_limit))
             error = "invalid line limit '" + v + "' (a whole number from 1 to 1000000)";
         return error.empty();
     }},
    {"-q", "--quiet", nullptr, "print only the summary line of each file",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.quiet = true;
         return true;
     }},
    {"-j", "--jobs", "N",
     "check N files at a time (default 1; 0: one per processor\n"
     "core); the output is the same, in the order of the files",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (!parse_number(v, 0, 1024, o.jobs))
             error = "invalid job count '" + v + "' (a whole number from 0 to 1024)";
         else if (o.jobs == 0)
             o.jobs = std::max(1u, std::thread::hardware_concurrency());
         return error.empty();
     }},
    {nullptr, "--files-from", "FILE",
     "also check the paths that FILE lists, one a line, after\n"
     "those on the command line ('-': read the list from\n"
     "standard input)",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (v.empty())
             error = "option '--files-from' needs a file";
         o.files_from = v;
         return error.empty();
     }},
    {"-o", "--output", "PATH",
     "write the document back through the CIF writer to PATH\n"
     "('-' for standard output, when the report goes to standard\n"
     "error); one input file only; never the input itself",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (v.empty())
             error = "option '--output' needs a path";
         o.output = v;
         return error.empty();
     }},
    {nullptr, "--dict-dir", "DIR",
     "load the dictionaries (*.dic) of DIR instead of those found\n"
     "beside the program; repeatable, searched in the order given",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (v.empty())
             error = "option '--dict-dir' needs a directory";
         o.dictionary_directories.push_back(v);
         return error.empty();
     }},
    {nullptr, "--no-dict", nullptr, "check the syntax only, without dictionaries",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.use_dictionaries = false;
         return true;
     }},
    {nullptr, "--list-dicts", nullptr,
     "list the dictionaries loaded (name, version, path) and the\n"
     "findings of any that was rejected, then exit",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.list_dictionaries = true;
         return true;
     }},
    {nullptr, "--mandatory", "FILE",
     "after reading, report the data items that FILE lists and a\n"
     "file lacks (lines 'data_publication', 'data_crystal' or\n"
     "'data_all', each followed by data names)",
     [](CheckerOptions& o, const std::string& v, std::string& error) {
         if (v.empty())
             error = "option '--mandatory' needs a file";
         o.mandatory_file = v;
         return error.empty();
     }},
    {nullptr, "--structure", nullptr,
     "report what each block with atom sites describes: the space\n"
     "group, the cell, the atoms, bonds and molecules, and the\n"
     "moiety formula computed beside the file's own",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.structure = true;
         return true;
     }},
    {"-h", "--help", nullptr, "show this help and exit",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.help = true;
         return true;
     }},
    {nullptr, "--version", nullptr, "show the version and exit",
     [](CheckerOptions& o, const std::string&, std::string&) {
         o.version = true;
         return true;
     }},
};

const Option* find_option(const std::string& name)
{
    for (const Option& option : option_table)
        if (name == option.long_name || (option.short_name && name == option.short_name))
            return &option;
    return nullptr;
}

} // namespace

std::string CheckerOptions::usage()
{
    constexpr std::size_t help_column = 22;
    std::string text = "Usage: cifward-check [options] FILE...\n"
                       "Checks CIF files and prints one line per finding, then a summary line per file.\n"
                       "A FILE of '-' reads standard input; a gzip-compressed FILE is read as its\n"
                       "contents.\n"
                       "\n"
                       "Options:\n";
    for (const Option& option : option_table) {
        std::string left = "  ";
        if (option.short_name)
            left += std::string(option.short_name) + ", ";
        left += option.long_name;
        if (option.value_name)
            left += std::string(" ") + option.value_name;
        text += left;
        if (left.size() + 2 > help_column)
            text += '\n' + std::string(help_column, ' ');
        else
            text += std::string(help_column - left.size(), ' ');
        for (const char* c = option.help; *c; ++c) {
            text += *c;
            if (*c == '\n')
                text += std::string(help_column, ' ');
        }
        text += '\n';
    }
    text += "\n"
            "Dictionaries are searched beside the program (dict/), then in the installation\n"
            "(share/cifward/dict), then in the directories of CIFWARD_DICT_PATH.\n"
            "\n"
            "Exit status: 0 when no file has an error, 1 when one has,\n"
            "2 for a usage error or a file that cannot be read.\n";
    return text;
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
        // A value joined to its option: "--format=json", or "-j2" for a short one.
        std::string value;
        bool joined = false;
        const Option* option = find_option(arg);
        if (!option && arg.compare(0, 2, "--") == 0 && arg.find('=') != std::string::npos) {
            const std::string::size_type eq = arg.find('=');
            value = arg.substr(eq + 1);
            arg.resize(eq);
            joined = true;
            option = find_option(arg);
        } else if (!option && arg.size() > 2 && arg[1] != '-') {
            option = find_option(arg.substr(0, 2));
            if (option && option->value_name) {
                value = arg.substr(2);
                arg.resize(2);
                joined = true;
            } else {
                option = nullptr;
            }
        }
        if (!option) {
            error = "unknown option '" + arg + "'";
            return false;
        }
        if (!option->value_name && joined) {
            error = "option '" + arg + "' takes no value";
            return false;
        }
        if (option->value_name && !joined) {
            if (i + 1 >= argc) {
                error = "option '" + arg + "' needs a value";
                return false;
            }
            value = argv[++i];
        }
        if (!option->apply(options, value, error))
            return false;
    }
    if (!options.use_dictionaries && (options.list_dictionaries || !options.dictionary_directories.empty())) {
        error = "--no-dict cannot be combined with --dict-dir or --list-dicts";
        return false;
    }
    if (options.help || options.version || options.list_dictionaries)
        return true;
    if (options.files.empty() && options.files_from.empty()) {
        error = "no input file (use '-' for standard input)";
        return false;
    }
    if (options.files_from == "-")
        for (const std::string& file : options.files)
            if (file == "-") {
                error = "standard input cannot hold both a file and the list of files";
                return false;
            }
    if (!options.output.empty() && (options.files.size() != 1 || !options.files_from.empty())) {
        error = "--output takes exactly one input file";
        return false;
    }
    return true;
}
