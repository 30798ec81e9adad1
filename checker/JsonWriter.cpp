#include "JsonWriter.h"

#include <cstdio>

std::string json_string(std::string_view latin1)
{
    std::string out;
    out.reserve(latin1.size() + 2);
    out += '"';
    for (char ch : latin1) {
        const unsigned char c = static_cast<unsigned char>(ch);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7f) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", c);
                out += escape;
            } else if (c >= 0x80) {
                out += static_cast<char>(0xC0 | (c >> 6));
                out += static_cast<char>(0x80 | (c & 0x3F));
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
    return out;
}
