#include "BatchChecker.h"

#include "Cif.h"
#include "CifConcreteDictionary.h"
#include "CifInputFile.h"
#include "JsonWriter.h"
#include "ProgramInfo.h"
#include "ProgressLine.h"
#include "QcbsDictionaryLoader.h"
#include "StructureReport.h"

#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <mutex>
#include <sstream>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string plural(std::size_t n, const char* one, const char* many)
{
    return std::to_string(n) + ' ' + (n == 1 ? one : many);
}

// Writes all of `bytes` to a descriptor; 0, or the errno of the failure.
int write_all(int fd, const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        done += static_cast<std::size_t>(n);
    }
    return 0;
}

} // namespace

BatchChecker::BatchChecker(const CheckerOptions& options, const std::string& program_directory,
                           std::istream& in, std::ostream& out, std::ostream& err, bool show_progress)
    : options_(options), program_directory_(program_directory), in_(in), out_(out), err_(err),
      report_(options.output == "-" ? err : out), show_progress_(show_progress)
{
}

BatchChecker::~BatchChecker() = default;

std::string BatchChecker::program_directory(const char* argv0)
{
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (ec)
        self = fs::absolute(argv0 ? argv0 : ".", ec);
    return self.parent_path().string();
}

BatchChecker::Checking BatchChecker::load_dictionaries(bool report)
{
    Checking checking;
    if (!options_.use_dictionaries) {
        checking.dictionary = HCifDictionary(new CifConcreteDictionary);
        return checking;
    }
    QcbsDictionaryLoader loader;
    if (!options_.dictionary_directories.empty()) {
        QStringList directories;
        for (const std::string& directory : options_.dictionary_directories) {
            if (report && !fs::is_directory(directory))
                err_ << "cifward-check: no dictionary directory '" << directory << "'\n";
            directories << QString::fromStdString(directory);
        }
        loader.setSearchDirectories(directories);
    }
    HCifDictionaryPool pool = loader.load(QString::fromStdString(program_directory_));
    if (report) {
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
    }
    checking.dictionary = pool;
    checking.with_dictionaries = pool->size() > 0;
    return checking;
}

int BatchChecker::list_dictionaries()
{
    load_dictionaries(true);
    for (const std::string& line : dictionary_lines_)
        out_ << line << '\n';
    if (dictionary_lines_.empty())
        out_ << "no dictionary loaded\n";
    return status_;
}

void BatchChecker::fail(const std::string& message)
{
    if (progress_)
        progress_->erase();
    err_ << "cifward-check: " << message << '\n';
    status_ = UsageOrReadFailure;
}

std::vector<std::string> BatchChecker::gather_paths()
{
    std::vector<std::string> paths = options_.files;
    if (options_.files_from.empty())
        return paths;
    const bool from_stdin = options_.files_from == "-";
    const std::string list_name =
        from_stdin ? std::string("standard input") : "'" + options_.files_from + "'";
    std::ifstream file;
    if (!from_stdin) {
        std::error_code ec;
        if (fs::is_directory(options_.files_from, ec)) {
            fail("cannot read the list " + list_name + ": Is a directory");
            return paths;
        }
        file.open(options_.files_from, std::ios::binary);
        if (!file) {
            fail("cannot read the list " + list_name + ": " + std::strerror(errno));
            return paths;
        }
    }
    std::istream& list = from_stdin ? in_ : file;
    std::size_t empty_lines = 0;
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty())
            ++empty_lines;
        else
            paths.push_back(std::move(line));
    }
    if (list.bad())
        fail("cannot read the list " + list_name + ": read error");
    if (empty_lines > 0)
        err_ << "cifward-check: " << plural(empty_lines, "empty line", "empty lines") << " in the list "
             << list_name << " skipped\n";
    return paths;
}

void BatchChecker::report_text(std::string& report, const std::string& name, const Cif& cif) const
{
    const CifErrorList& errors = *cif.errors();
    if (!options_.quiet)
        for (const CifError& finding : errors) {
            report += name;
            report += ": ";
            report += finding.text();
            report += '\n';
        }
    report += name + ": " + plural(errors.count_of_severity(2), "error", "errors") + ", " +
              plural(errors.count_of_severity(1), "warning", "warnings") + ", " +
              plural(errors.count_of_severity(0), "remark", "remarks") + '\n';
}

void BatchChecker::report_json(std::string& report, const std::string& name, const Cif& cif,
                               bool one_line) const
{
    // The same object in both forms; only the line breaks between findings differ.
    const char* const first_finding_break = one_line ? "" : "\n      ";
    const char* const finding_break = one_line ? ", " : ",\n      ";
    const char* const findings_end = one_line ? "]" : "\n    ]";
    report += "{\"file\": " + json_string(name) + ", \"blocks\": [";
    bool first_block = true;
    for (const HCifDataBlock& block : cif) {
        report += (first_block ? "" : ", ") + json_string(block->name());
        first_block = false;
    }
    report += "], \"findings\": [";
    const CifErrorList& errors = *cif.errors();
    bool first_finding = true;
    if (!options_.quiet) {
        for (const CifError& finding : errors) {
            report += first_finding ? first_finding_break : finding_break;
            report += "{\"code\": " + std::to_string(finding.code) +
                      ", \"severity\": " + std::to_string(finding.severity()) +
                      ", \"severity_text\": " + json_string(finding.severity_text()) +
                      ", \"line\": " + std::to_string(finding.line) +
                      ", \"first\": " + json_string(finding.first) +
                      ", \"second\": " + json_string(finding.second) +
                      ", \"message\": " + json_string(finding.message()) +
                      ", \"text\": " + json_string(finding.text()) + "}";
            first_finding = false;
        }
    }
    report += first_finding ? "]" : findings_end;
    report += ", \"errors\": " + std::to_string(errors.count_of_severity(2)) +
              ", \"warnings\": " + std::to_string(errors.count_of_severity(1)) +
              ", \"remarks\": " + std::to_string(errors.count_of_severity(0)) + "}";
    if (one_line)
        report += '\n';
}

BatchChecker::FileResult BatchChecker::check_file(const Checking& checking, std::size_t index,
                                                  std::unique_ptr<Cif>* keep)
{
    const std::string& path = paths_[index];
    const bool from_stdin = path == "-";
    const std::string name = from_stdin ? "<stdin>" : path;
    const std::string cannot =
        from_stdin ? std::string("cannot read standard input: ") : "cannot read '" + path + "': ";
    FileResult result;
    try {
        // Standard input cannot be read twice: the first '-' has it all, any later one nothing.
        std::istringstream stdin_copy(index == first_stdin_ ? stdin_text_ : std::string());
        CifInputFile input;
        if (!(from_stdin ? input.open(stdin_copy) : input.open(path))) {
            result.messages = "cifward-check: " + cannot + input.error() + '\n';
            result.status = UsageOrReadFailure;
            return result;
        }
        auto cif = std::make_unique<Cif>(checking.dictionary);
        // Without a dictionary the check is of the syntax only: every data name would be
        // "non-standard", and the two value checks that need no dictionary (refinement flags,
        // weighting scheme) are dictionary validation all the same.
        if (!checking.with_dictionaries)
            for (std::uint32_t code : {320u, 323u, 324u, 325u, 326u, 327u, 328u, 329u, 344u})
                cif->errors()->suppress(code);
        cif->read(input.stream(), options_.line_limit);
        // A file cut short, a damaged archive: what was read is not the file, and a report of it
        // would mislead.
        if (!input.error().empty()) {
            result.messages = "cifward-check: " + cannot + input.error() + '\n';
            result.status = UsageOrReadFailure;
            return result;
        }
        if (!options_.mandatory_file.empty())
            cif->check_mandatory(mandatory_.publication_items, mandatory_.crystal_items);
        const bool one_line = options_.format == CheckerOptions::Format::JsonLines;
        if (options_.structure) {
            std::ostringstream structure;
            if (options_.format == CheckerOptions::Format::Text)
                StructureReport::write_text(structure, name, StructureReport::analyse(*cif));
            else
                StructureReport::write_json(structure, name, StructureReport::analyse(*cif), one_line);
            result.report = structure.str();
        } else if (options_.format == CheckerOptions::Format::Text) {
            report_text(result.report, name, *cif);
        } else {
            report_json(result.report, name, *cif, one_line);
        }
        result.status = cif->errors()->count_of_severity(2) > 0 ? HasErrors : Clean;
        if (keep)
            *keep = std::move(cif);
    } catch (const std::exception& e) {
        result.report.clear();
        result.messages = "cifward-check: cannot check '" + name + "': " + e.what() + '\n';
        result.status = UsageOrReadFailure;
    }
    return result;
}

bool BatchChecker::put_out(const FileResult& result)
{
    if (!result.messages.empty()) {
        if (progress_)
            progress_->erase();
        err_ << result.messages;
    }
    if (!result.report.empty()) {
        if (options_.format == CheckerOptions::Format::Json)
            report_ << (emitted_ == 0 ? "\n    " : ",\n    ");
        errno = 0;
        report_ << result.report;
        ++emitted_;
    }
    if (result.status > status_)
        status_ = result.status;
    if (!report_) {
        report_failed();
        return false;
    }
    if (progress_)
        progress_->file_done();
    return true;
}

void BatchChecker::report_failed()
{
    // Checked right after the write that failed, so errno still tells why (a full disk, a
    // closed pipe).
    const int error = errno;
    fail(std::string("cannot write the report") + (error ? std::string(": ") + std::strerror(error) : ""));
    report_failed_ = true;
}

void BatchChecker::check_all(const std::vector<std::string>& paths, const Checking& checking)
{
    const std::size_t count = paths.size();
    const unsigned jobs = static_cast<unsigned>(std::min<std::size_t>(options_.jobs, count));
    if (jobs <= 1) {
        for (std::size_t i = 0; i < count; ++i)
            if (!put_out(check_file(checking, i, nullptr)))
                return;
        return;
    }

    // Workers take files in order and leave each result in its slot; this thread lets the
    // results out in order. A worker stays at most `window` files ahead of the output, which
    // bounds the memory that waiting reports take.
    const std::size_t window = 4 * static_cast<std::size_t>(jobs);
    struct Slot {
        bool ready = false;
        FileResult result;
    };
    std::vector<Slot> waiting(window);
    std::mutex mutex;
    std::condition_variable work_wanted, result_ready;
    std::size_t next = 0, taken_out = 0;
    bool stop = false;

    // The first worker checks with the dictionaries already loaded; no other thread touches
    // them until it has ended. Each other worker loads its own.
    auto work = [&](bool first) {
        const Checking own = first ? checking : load_dictionaries(false);
        for (;;) {
            std::size_t index;
            {
                std::unique_lock<std::mutex> lock(mutex);
                work_wanted.wait(lock, [&] { return stop || next >= count || next < taken_out + window; });
                if (stop || next >= count)
                    return;
                index = next++;
            }
            FileResult result = check_file(own, index, nullptr);
            {
                const std::lock_guard<std::mutex> lock(mutex);
                waiting[index % window].result = std::move(result);
                waiting[index % window].ready = true;
            }
            result_ready.notify_all();
        }
    };
    std::vector<std::thread> workers;
    for (unsigned j = 0; j < jobs; ++j)
        workers.emplace_back(work, j == 0);

    for (std::size_t i = 0; i < count; ++i) {
        FileResult result;
        {
            std::unique_lock<std::mutex> lock(mutex);
            Slot& slot = waiting[i % window];
            result_ready.wait(lock, [&] { return slot.ready; });
            result = std::move(slot.result);
            slot.ready = false;
            taken_out = i + 1;
        }
        work_wanted.notify_all();
        if (!put_out(result)) {
            const std::lock_guard<std::mutex> lock(mutex);
            stop = true;
            break;
        }
    }
    work_wanted.notify_all();
    for (std::thread& worker : workers)
        worker.join();
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
    std::ostringstream text;
    cif.write(text, options_.line_limit);
    const std::string bytes = std::move(text).str();

    // A device or a pipe (/dev/null, /dev/full, a FIFO) is written to as it is: it cannot be
    // replaced by a file, and must not be.
    struct stat status;
    if (::stat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        const int fd = ::open(target.c_str(), O_WRONLY | O_CLOEXEC);
        int error = fd < 0 ? errno : write_all(fd, bytes);
        if (fd >= 0 && ::close(fd) != 0 && error == 0)
            error = errno;
        if (error != 0) {
            fail("cannot write '" + options_.output + "': " + std::strerror(error));
            return false;
        }
        return true;
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
    int write_errno = write_all(fd, bytes);
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

    if (!options_.mandatory_file.empty()) {
        if (fs::is_directory(options_.mandatory_file) || !mandatory_.read_file(options_.mandatory_file)) {
            fail("cannot read the mandatory items file '" + options_.mandatory_file + "'");
            return status_;
        }
    }
    const Checking checking = load_dictionaries(true);
    if (options_.use_dictionaries && !checking.with_dictionaries)
        err_ << "cifward-check: no dictionary loaded; checking the syntax only\n";

    paths_ = gather_paths();
    for (std::size_t i = 0; i < paths_.size(); ++i)
        if (paths_[i] == "-") {
            first_stdin_ = i;
            stdin_text_.assign(std::istreambuf_iterator<char>(in_), std::istreambuf_iterator<char>{});
            break;
        }

    const bool json = options_.format == CheckerOptions::Format::Json;
    if (json) {
        report_ << "{\n  \"program\": " << json_string(programName())
                << ", \"version\": " << json_string(programVersion()) << ",\n  \"dictionaries\": [";
        for (std::size_t i = 0; i < dictionary_lines_.size(); ++i)
            report_ << (i ? ", " : "") << json_string(dictionary_lines_[i]);
        report_ << "],\n  \"files\": [";
    }
    if (show_progress_ && paths_.size() > 1)
        progress_ = std::make_unique<ProgressLine>(err_, report_, paths_.size());

    if (!options_.output.empty() && paths_.size() == 1) {
        std::unique_ptr<Cif> cif;
        const FileResult result = check_file(checking, 0, &cif);
        if (put_out(result) && cif)
            write_back(*cif, paths_[0]);
    } else {
        check_all(paths_, checking);
    }
    progress_.reset();

    if (report_failed_)
        return status_;
    errno = 0;
    if (json)
        report_ << (emitted_ == 0 ? "]\n}\n" : "\n  ]\n}\n");
    report_.flush();
    if (!report_)
        report_failed();
    return status_;
}

int BatchChecker::main(int argc, const char* const* argv, std::istream& in, std::ostream& out,
                       std::ostream& err, bool err_is_terminal)
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
    return BatchChecker(options, program_directory(argc > 0 ? argv[0] : nullptr), in, out, err,
                        err_is_terminal)
        .run();
}
