#include "Regex.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include "MoleculeError.h"

#include <pcre2.h>

struct Regex::Code {
    pcre2_code* code = nullptr;
    ~Code() { pcre2_code_free(code); }
};

Regex::Regex(const std::string& pattern) : pattern_(pattern), code_(std::make_unique<Code>())
{
    int error = 0;
    PCRE2_SIZE offset = 0;
    code_->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.c_str()), pattern.size(), 0, &error,
                                &offset, nullptr);
    if (!code_->code) {
        PCRE2_UCHAR text[256];
        pcre2_get_error_message(error, text, sizeof text);
        throw molecule_error("Regex: " + std::string(reinterpret_cast<char*>(text)) + " at offset " +
                             std::to_string(offset) + " in \"" + pattern + "\"");
    }
}

Regex::~Regex() = default;
Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;

std::size_t Regex::capture_count() const
{
    uint32_t count = 0;
    pcre2_pattern_info(code_->code, PCRE2_INFO_CAPTURECOUNT, &count);
    return count;
}

std::optional<std::vector<std::string>> Regex::match(const std::string& subject) const
{
    std::unique_ptr<pcre2_match_data, decltype(&pcre2_match_data_free)> data(
        pcre2_match_data_create_from_pattern(code_->code, nullptr), &pcre2_match_data_free);
    const int rc = pcre2_match(code_->code, reinterpret_cast<PCRE2_SPTR>(subject.data()), subject.size(), 0,
                               0, data.get(), nullptr);
    if (rc < 0)
        return std::nullopt;
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(data.get());
    std::vector<std::string> groups(capture_count() + 1);
    for (int i = 0; i < rc; ++i) {
        if (ovector[2 * i] == PCRE2_UNSET)
            continue;
        groups[i] = subject.substr(ovector[2 * i], ovector[2 * i + 1] - ovector[2 * i]);
    }
    return groups;
}
