#pragma once

#include <stdexcept>
#include <string>

// The domain error of the structure toolkit: every failure of the crystal arithmetic is one of
// these, carrying the text the user or the log sees.
class molecule_error : public std::runtime_error {
public:
    explicit molecule_error(const std::string& message) : std::runtime_error(message) {}
};
