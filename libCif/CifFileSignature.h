#ifndef CIFWARD_CIFFILESIGNATURE_H
#define CIFWARD_CIFFILESIGNATURE_H

#include <cstddef>
#include <string>
#include <string_view>

// What the first bytes of a file say it holds, before any of it is read as CIF. Only a file that
// cannot be text is called binary: a CIF with a stray NUL or bell byte is still a CIF, and the
// reader reports each such byte at its line.
struct CifFileSignature {
    enum Kind { Text, Gzip, Binary };

    // Bytes a caller should pass: enough for every signature and for the share of control bytes.
    static constexpr std::size_t head_size = 4096;

    Kind kind = Text;
    // For Binary, what the file is, to complete "cannot read 'x': ...": "a PNG image, not a CIF".
    std::string reason;

    static CifFileSignature of(std::string_view head);
};

#endif
