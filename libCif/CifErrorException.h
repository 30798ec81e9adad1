#ifndef CIFWARD_CIFERROREXCEPTION_H
#define CIFWARD_CIFERROREXCEPTION_H

#include "CifError.h"

#include <stdexcept>

// Raised for a misuse of the model by the program; bad input never raises it.
class CifErrorException : public std::runtime_error {
public:
    explicit CifErrorException(const CifError& error);
    const CifError& error() const { return error_; }

private:
    CifError error_;
};

#endif
