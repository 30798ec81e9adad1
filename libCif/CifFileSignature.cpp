#include "CifFileSignature.h"

namespace {

struct Magic {
    std::string_view bytes;
    const char* reason;
};

using namespace std::string_view_literals;

// Formats that people keep CIFs in, or mistake for them, and that the reader does not unpack.
const Magic unhandled[] = {
    {"BZh"sv, "bzip2-compressed; only gzip is read, so decompress it first"},
    {"\xFD"
     "7zXZ\0"sv,
     "xz-compressed; only gzip is read, so decompress it first"},
    {"\x28\xB5\x2F\xFD"sv, "zstd-compressed; only gzip is read, so decompress it first"},
    {"\x1F\x9D"sv, "compressed with compress(1); only gzip is read, so decompress it first"},
    {"PK\x03\x04"sv, "a ZIP archive, not a CIF"},
    {"7z\xBC\xAF\x27\x1C"sv, "a 7-Zip archive, not a CIF"},
    {"\x89PNG\r\n\x1A\n"sv, "a PNG image, not a CIF"},
    {"\xFF\xD8\xFF"sv, "a JPEG image, not a CIF"},
    {"GIF87a"sv, "a GIF image, not a CIF"},
    {"GIF89a"sv, "a GIF image, not a CIF"},
    {"II*\0"sv, "a TIFF image, not a CIF"},
    {"MM\0*"sv, "a TIFF image, not a CIF"},
    {"%PDF-"sv, "a PDF document, not a CIF"},
};

bool is_control(unsigned char c)
{
    return (c < 32 && c != '\t' && c != '\n' && c != '\r' && c != '\v' && c != '\f') || c == 127;
}

} // namespace

CifFileSignature CifFileSignature::of(std::string_view head)
{
    if (head.size() >= 2 && head[0] == '\x1F' && head[1] == '\x8B')
        return {Gzip, {}};
    for (const Magic& magic : unhandled)
        if (head.substr(0, magic.bytes.size()) == magic.bytes)
            return {Binary, magic.reason};
    // A text file has no control bytes but the odd stray one; an executable, a database or text
    // in UTF-16 has them by the thousand. A quarter of the start is far beyond any stray byte.
    const std::string_view start = head.substr(0, head_size);
    std::size_t controls = 0;
    for (char c : start)
        controls += is_control(static_cast<unsigned char>(c));
    if (!start.empty() && 4 * controls >= start.size())
        return {Binary, "a binary file, not a CIF"};
    return {Text, {}};
}
