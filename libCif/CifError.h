#ifndef CIFWARD_CIFERROR_H
#define CIFWARD_CIFERROR_H

#include <cstdint>
#include <string>

// One finding: a code of the message table, the line it was found on (-1 for none) and the two
// texts that fill the message's placeholders.
class CifError {
public:
    CifError(std::uint32_t code, std::int32_t line);
    CifError(std::uint32_t code, std::string first, std::int32_t line);
    CifError(std::uint32_t code, std::string first, std::string second, std::int32_t line);

    std::uint32_t code = 0;
    std::int32_t line = -1;
    std::string first;
    std::string second;

    int severity() const;
    std::string severity_text() const;
    std::string message() const;
    std::string text() const;

    static std::string severity_label(int severity);
};

// The value check's result (1 to 7) as the code of its finding; anything else gives 323.
std::uint32_t cif_check_result_code(int result);

#endif
