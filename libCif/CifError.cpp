#include "CifError.h"

#include "CifMessageTable.h"

#include <utility>

CifError::CifError(std::uint32_t code, std::int32_t line) : code(code), line(line)
{
}

CifError::CifError(std::uint32_t code, std::string first, std::int32_t line)
    : code(code), line(line), first(std::move(first))
{
}

CifError::CifError(std::uint32_t code, std::string first, std::string second, std::int32_t line)
    : code(code), line(line), first(std::move(first)), second(std::move(second))
{
}

int CifError::severity() const
{
    return cif_message(code).severity;
}

std::string CifError::severity_label(int severity)
{
    switch (severity) {
    case 0:
        return "Remark";
    case 1:
        return "Warning";
    case 2:
        return "Error";
    default:
        return "Unknown";
    }
}

std::string CifError::severity_text() const
{
    return severity_label(severity());
}

std::string CifError::message() const
{
    // The two placeholders are filled one after the other, so a `first` that itself holds "<2>"
    // takes `second` in that place.
    std::string text = cif_message(code).text;
    std::string::size_type at = text.find("<1>");
    if (at != std::string::npos)
        text.replace(at, 3, first);
    at = text.find("<2>");
    if (at != std::string::npos)
        text.replace(at, 3, second);
    return text;
}

std::string CifError::text() const
{
    std::string out = severity_text();
    if (line != -1) {
        out += ": Line ";
        out += std::to_string(line);
        out += ' ';
    }
    out += ": ";
    out += message();
    return out;
}

std::uint32_t cif_check_result_code(int result)
{
    static const std::uint32_t codes[] = {324, 325, 326, 327, 328, 329, 344};
    return (result >= 1 && result <= 7) ? codes[result - 1] : 323;
}
