#ifndef CIFWARD_JSONWRITER_H
#define CIFWARD_JSONWRITER_H

#include <string>
#include <string_view>

// A JSON string literal of CIF text. CIF bytes are Latin-1, so each byte of 128 and above
// becomes the UTF-8 form of that code point and the output is always valid UTF-8.
std::string json_string(std::string_view latin1);

#endif
