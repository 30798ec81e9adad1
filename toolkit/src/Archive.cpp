#include "Archive.h"

#include "MoleculeError.h"

#include <cstring>
#include <istream>
#include <ostream>

Archive::Archive(std::ostream& out) : out_(&out)
{
}

Archive::Archive(std::istream& in) : in_(&in)
{
}

void Archive::put(const unsigned char* bytes, std::size_t n)
{
    if (!out_)
        throw molecule_error("Archive::write - the archive is open for reading");
    out_->write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(n));
    if (!*out_)
        throw molecule_error("Archive::write - cannot write: the disk may be full or the file read-only");
}

void Archive::get(unsigned char* bytes, std::size_t n)
{
    if (!in_)
        throw molecule_error("Archive::read - the archive is open for writing");
    in_->read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(n));
    if (static_cast<std::size_t>(in_->gcount()) != n)
        throw molecule_error("Archive::read - unexpected end of data");
}

namespace {

void to_little_endian(uint64_t v, unsigned char* bytes, int n)
{
    for (int i = 0; i < n; ++i)
        bytes[i] = static_cast<unsigned char>(v >> (8 * i));
}

uint64_t from_little_endian(const unsigned char* bytes, int n)
{
    uint64_t v = 0;
    for (int i = 0; i < n; ++i)
        v |= static_cast<uint64_t>(bytes[i]) << (8 * i);
    return v;
}

} // namespace

void Archive::write_int32(int32_t v)
{
    unsigned char bytes[4];
    to_little_endian(static_cast<uint32_t>(v), bytes, 4);
    put(bytes, 4);
}

void Archive::write_double(double v)
{
    uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    unsigned char bytes[8];
    to_little_endian(bits, bytes, 8);
    put(bytes, 8);
}

void Archive::write_bool(bool v)
{
    const unsigned char byte = v ? 1 : 0;
    put(&byte, 1);
}

void Archive::write_string(const std::string& s)
{
    write_int32(static_cast<int32_t>(s.size()));
    put(reinterpret_cast<const unsigned char*>(s.data()), s.size());
}

int32_t Archive::read_int32()
{
    unsigned char bytes[4];
    get(bytes, 4);
    return static_cast<int32_t>(static_cast<uint32_t>(from_little_endian(bytes, 4)));
}

double Archive::read_double()
{
    unsigned char bytes[8];
    get(bytes, 8);
    const uint64_t bits = from_little_endian(bytes, 8);
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

bool Archive::read_bool()
{
    unsigned char byte;
    get(&byte, 1);
    return byte != 0;
}

std::string Archive::read_string()
{
    const int32_t length = read_int32();
    // Read in pieces, so that a damaged length is caught at the end of the data rather than by
    // allocating what it claims.
    if (length < 0)
        throw molecule_error("Archive::read - bad string length: " + std::to_string(length));
    std::string s;
    char piece[4096];
    for (int32_t left = length; left > 0;) {
        const int32_t n =
            left < static_cast<int32_t>(sizeof piece) ? left : static_cast<int32_t>(sizeof piece);
        in_->read(piece, n);
        if (in_->gcount() != n)
            throw molecule_error("Archive::read - bad string length: " + std::to_string(length));
        s.append(piece, static_cast<std::size_t>(n));
        left -= n;
    }
    return s;
}
