#pragma once

#include "FileFormat.h"

// A format recognised by a telling line of text: the file is read line by line until one
// matches, or for at most a few hundred lines. A file that cannot be opened is not claimed.
class TextIdentifiedFileFormat : public FileFormat {
public:
    static constexpr int lines_read = 500;

    bool identify(const std::string& filename) const override;
    virtual bool line_matches(const std::string& line) const = 0;
};
