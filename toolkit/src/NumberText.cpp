#include "NumberText.h"

#include <cstdlib>

double read_plain_number(const std::string& text)
{
    const std::string digits = "0123456789";
    const std::string run_chars = ".0123456789";
    const auto first_digit = text.find_first_of(digits);
    if (first_digit == std::string::npos)
        return 0.0;
    std::size_t begin = first_digit;
    while (begin > 0 && run_chars.find(text[begin - 1]) != std::string::npos)
        --begin;
    std::size_t end = first_digit;
    while (end < text.size() && run_chars.find(text[end]) != std::string::npos)
        ++end;
    const double magnitude = std::strtod(text.substr(begin, end - begin).c_str(), nullptr);
    const bool negative = text.find('-') < begin;
    return negative ? -magnitude : magnitude;
}
