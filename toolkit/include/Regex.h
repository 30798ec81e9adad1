#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

// A compiled Perl-compatible regular expression (PCRE2, 8-bit). Compiled once, matched often: the
// number syntax of measured values is read through one of these.
class Regex {
public:
    // Fails with the PCRE2 message and the offset of the error in the pattern.
    explicit Regex(const std::string& pattern);
    ~Regex();
    Regex(Regex&&) noexcept;
    Regex& operator=(Regex&&) noexcept;
    Regex(const Regex&) = delete;
    Regex& operator=(const Regex&) = delete;

    const std::string& pattern() const { return pattern_; }
    std::size_t capture_count() const;

    // The whole match at index 0 and then each group; a group that took no part is empty.
    std::optional<std::vector<std::string>> match(const std::string& subject) const;
    bool matches(const std::string& subject) const { return match(subject).has_value(); }

private:
    struct Code;
    std::string pattern_;
    std::unique_ptr<Code> code_;
};
