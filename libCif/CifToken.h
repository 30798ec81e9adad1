#ifndef CIFWARD_CIFTOKEN_H
#define CIFWARD_CIFTOKEN_H

#include <cstdint>
#include <string>

// Kinds are bits so that comment and blank can be tested together (mask 192).
enum CifTokenKind {
    CifEnd = 0,
    CifValueToken = 1,
    CifName = 2,
    CifHeading = 4,
    CifLoopToken = 8,
    CifComment = 64,
    CifBlank = 128
};

struct CifToken {
    CifTokenKind kind = CifEnd;
    std::string text;
    std::int32_t line = 0;
    std::int32_t end_line = 0;
};

#endif
