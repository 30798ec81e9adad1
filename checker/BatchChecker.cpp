#include "BatchChecker.h"

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifMandatoryItems.h"
#include "JsonWriter.h"
#include "ProgramInfo.h"
#include "QcbsDictionaryLoader.h"
#include "StructureReport.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

struct BatchChecker::FileReport {
    std::string name;
    const Cif* cif = nullptr;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t remarks = 0;
};

namespace {

// A file that holds a NUL byte in its first 64 KiB is not text: reading it as CIF would give
// thousands of findings and tell the user nothing.
bool looks_binary(const std::string& text)
{
    const std::size_t n = text.size() < 65536 ? text.size() : 65536;
    return std::memchr(text.data(), '\0', n) != nullptr;
}

std::string plural(std::size_t n, const char* one, const char* many)
{
    return std::to_string(n) + ' ' + (n == 1 ? one : many);
}

} // namespace

BatchChecker::BatchChecker(const CheckerOptions& options, const std::string& program_directory,
                           std::istream& in, std::ostream& out, std::ostream& err)
    : options_(options), program_directory_(program_directory), in_(in), out_(out), err_(err)
{
}

std::string BatchChecker::program_directory(const char* argv0)
{
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (ec)
        self = fs::absolute(argv0 ? argv0 : ".", ec);
    return self.parent_path().string();
}

bool BatchChecker::load_dictionaries()
{
    if (!options_.use_dictionaries) {
        dictionary_ = HCifDictionary(new CifConcreteDictionary);
        return false;
    }
    QcbsDictionaryLoader loader;
    if (!options_.dictionary_directories.empty()) {
        QStringList directories;
        for (const std::string& directory : options_.dictionary_directories) {
            if (!fs::is_directory(directory))
                err_ << "cifward-check: no dictionary directory '" << directory << "'\n";
            directories << QString::fromStdString(directory);
        }
        loader.setSearchDirectories(directories);
    }
    HCifDictionaryPool pool = loader.load(QString::fromStdString(program_directory_));
    for (const QcbsDictionaryLoader::Rejected& rejected : loader.rejected()) {
        err_ << "cifward-check: dictionary rejected: " << rejected.path.toStdString() << '\n';
        for (const CifError& finding : rejected.findings)
            err_ << "  " << finding.text() << '\n';
    }
    for (const QcbsDictionaryLoader::Loaded& loaded : loader.loaded()) {
        const CifDictionaryHeader& header = loaded.dictionary->header();
        dictionary_lines_.push_back((header.name.empty() ? std::string("(unnamed)") : header.name) + ' ' +
                                    (header.version.empty() ? std::string("-") : header.version) + ' ' +
                                    loaded.path.toStdString());
    }
    dictionary_ = pool;
    return pool->size() > 0;
}

int BatchChecker::list_dictionaries()
{
    load_dictionaries();
    for (const std::string& line : dictionary_lines_)
        out_ << line << '\n';
    if (dictionary_lines_.empty())
        out_ << "no dictionary loaded\n";
    return status_;
}

void BatchChecker::fail(const std::string& message)
{
    err_ << "cifward-check: " << message << '\n';
    status_ = UsageOrReadFailure;
}

std::unique_ptr<std::istream> BatchChecker::open(const std::string& path)
{
    if (path == "-") {
        // Standard input cannot be read twice, so it is taken whole.
        std::string text(std::istreambuf_iterator<char>(in_), std::istreambuf_iterator<char>{});
        if (in_.bad()) {
            fail("cannot read standard input");
            return nullptr;
        }
        return std::make_unique<std::istringstream>(std::move(text));
    }
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    if (ec || !fs::exists(status)) {
        fail("cannot read '" + path + "': No such file or directory");
        return nullptr;
    }
    if (fs::is_directory(status)) {
        fail("cannot read '" + path + "': Is a directory");
        return nullptr;
    }
    auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!*file) {
        fail("cannot read '" + path + "': " + std::strerror(errno));
        return nullptr;
    }
    std::string head(65536, '\0');
    file->read(&head[0], static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file->gcount()));
    if (file->bad()) {
        fail("cannot read '" + path + "': read error");
        return nullptr;
    }
    if (looks_binary(head)) {
        fail("cannot read '" + path + "': a binary file, not a CIF");
        return nullptr;
    }
    file->clear();
    file->seekg(0);
    return file;
}

void BatchChecker::report_text(std::ostream& report, const FileReport& file) const
{
    if (!options_.quiet)
        for (const CifError& finding : *file.cif->errors())
            report << file.name << ": " << finding.text() << '\n';
    report << file.name << ": " << plural(file.errors, "error", "errors") << ", "
           << plural(file.warnings, "warning", "warnings") << ", "
           << plural(file.remarks, "remark", "remarks") << '\n';
}

void BatchChecker::report_json(std::ostream& report, const FileReport& file, bool first) const
{
    report << (first ? "\n    {" : ",\n    {") << "\"file\": " << json_string(file.name) << ", \"blocks\": [";
    bool first_block = true;
    for (const HCifDataBlock& block : *file.cif) {
        report << (first_block ? "" : ", ") << json_string(block->name());
        first_block = false;
    }
    report << "], \"findings\": [";
    bool first_finding = true;
    if (!options_.quiet) {
        for (const CifError& finding : *file.cif->errors()) {
            report << (first_finding ? "\n      " : ",\n      ") << "{\"code\": " << finding.code
                   << ", \"severity\": " << finding.severity()
                   << ", \"severity_text\": " << json_string(finding.severity_text())
                   << ", \"line\": " << finding.line << ", \"first\": " << json_string(finding.first)
                   << ", \"second\": " << json_string(finding.second)
                   << ", \"message\": " << json_string(finding.message())
                   << ", \"text\": " << json_string(finding.text()) << "}";
            first_finding = false;
        }
    }
    report << (first_finding ? "]" : "\n    ]") << ", \"errors\": " << file.errors
           << ", \"warnings\": " << file.warnings << ", \"remarks\": " << file.remarks << "}";
}

bool BatchChecker::write_back(const Cif& cif, const std::string& input_path)
{
    if (options_.output == "-") {
        cif.write(out_, options_.line_limit);
        out_.flush();
        if (!out_) {
            fail("cannot write the document to standard output");
            return false;
        }
        return true;
    }

    const fs::path target(options_.output);
    std::error_code ec;
    if (input_path != "-" && fs::exists(target, ec) && fs::equivalent(target, fs::path(input_path), ec)) {
        fail("refusing to write over the input file '" + input_path + "'");
        return false;
    }
    // Written beside the target and renamed over it only when complete, so a full disk or a
    // failed write never leaves a damaged file behind.
    fs::path directory = target.parent_path();
    if (directory.empty())
        directory = ".";
    std::string pattern = (directory / ("." + target.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkstemp(pattern.data());
    if (fd < 0) {
        fail("cannot write '" + options_.output + "': " + std::strerror(errno));
        return false;
    }
    std::ostringstream text;
    cif.write(text, options_.line_limit);
    const std::string bytes = std::move(text).str();
    std::size_t done = 0;
    int write_errno = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            write_errno = errno;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    if (write_errno == 0 && ::fsync(fd) != 0)
        write_errno = errno;
    if (::close(fd) != 0 && write_errno == 0)
        write_errno = errno;
    if (write_errno == 0) {
        // Keep the permissions of a file that is replaced, else the usual ones for a new file.
        fs::perms perms =
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
        const fs::file_status old = fs::status(target, ec);
        if (!ec && fs::exists(old))
            perms = old.permissions();
        fs::permissions(pattern, perms, ec);
        if (std::rename(pattern.c_str(), target.c_str()) != 0)
            write_errno = errno;
    }
    if (write_errno != 0) {
        std::remove(pattern.c_str());
        fail("cannot write '" + options_.output + "': " + std::strerror(write_errno));
        return false;
    }
    return true;
}

int BatchChecker::run()
{
    if (options_.list_dictionaries)
        return list_dictionaries();

    CifMandatoryItems mandatory;
    if (!options_.mandatory_file.empty()) {
        if (fs::is_directory(options_.mandatory_file) || !mandatory.read_file(options_.mandatory_file)) {
            fail("cannot read the mandatory items file '" + options_.mandatory_file + "'");
            return status_;
        }
    }
    const bool with_dictionaries = load_dictionaries();
    if (options_.use_dictionaries && !with_dictionaries)
        err_ << "cifward-check: no dictionary loaded; checking the syntax only\n";
    // With the document on standard output, the report goes to standard error.
    std::ostream& report = options_.output == "-" ? err_ : out_;
    const bool json = options_.format == CheckerOptions::Format::Json;
    if (json) {
        report << "{\n  \"program\": " << json_string(programName())
               << ", \"version\": " << json_string(programVersion()) << ",\n  \"dictionaries\": [";
        for (std::size_t i = 0; i < dictionary_lines_.size(); ++i)
            report << (i ? ", " : "") << json_string(dictionary_lines_[i]);
        report << "],\n  \"files\": [";
    }

    bool first = true;
    for (const std::string& path : options_.files) {
        std::unique_ptr<std::istream> input = open(path);
        if (!input)
            continue;
        Cif cif(dictionary_);
        // Without a dictionary the check is of the syntax only: every data name would be
        // "non-standard", and the two value checks that need no dictionary (refinement flags,
        // weighting scheme) are dictionary validation all the same.
        if (!with_dictionaries)
            for (std::uint32_t code : {320u, 323u, 324u, 325u, 326u, 327u, 328u, 329u, 344u})
                cif.errors()->suppress(code);
        cif.read(*input, options_.line_limit);
        input.reset();
        if (!options_.mandatory_file.empty())
            cif.check_mandatory(mandatory.publication_items, mandatory.crystal_items);
        FileReport file;
        file.name = path == "-" ? "<stdin>" : path;
        file.cif = &cif;
        file.errors = cif.errors()->count_of_severity(2);
        file.warnings = cif.errors()->count_of_severity(1);
        file.remarks = cif.errors()->count_of_severity(0);
        if (file.errors > 0 && status_ == Clean)
            status_ = HasErrors;

        if (options_.structure && json)
            StructureReport::write_json(report, file.name, StructureReport::analyse(cif), first);
        else if (options_.structure)
            StructureReport::write_text(report, file.name, StructureReport::analyse(cif));
        else if (json)
            report_json(report, file, first);
        else
            report_text(report, file);
        first = false;
        if (!options_.output.empty())
            write_back(cif, path);
    }
    if (json)
        report << (first ? "]\n}\n" : "\n  ]\n}\n");
    report.flush();
    return status_;
}

int BatchChecker::main(int argc, const char* const* argv, std::istream& in, std::ostream& out,
                       std::ostream& err)
{
    CheckerOptions options;
    std::string error;
    if (!CheckerOptions::parse(argc, argv, options, error)) {
        err << "cifward-check: " << error << "\nTry 'cifward-check --help' for more information.\n";
        return UsageOrReadFailure;
    }
    if (options.help) {
        out << CheckerOptions::usage();
        return Clean;
    }
    if (options.version) {
        out << "cifward-check (" << programName() << ") " << programVersion() << '\n';
        return Clean;
    }
    return BatchChecker(options, program_directory(argc > 0 ? argv[0] : nullptr), in, out, err).run();
}
