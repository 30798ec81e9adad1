#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

// A binary store of structure objects: each object writes its fields in a fixed order and reads
// them back in the same order. Numbers are stored little-endian whatever the machine, so a file
// written on one computer reads on another. An archive either stores (over an output stream) or
// loads (over an input stream); every failure is a molecule_error with a text the user can read,
// never a half-read object passed on as good.
class Archive {
public:
    explicit Archive(std::ostream& out);
    explicit Archive(std::istream& in);

    bool is_storing() const { return out_ != nullptr; }

    // Fail with "Archive::write - cannot write: the disk may be full or the file read-only".
    void write_int32(int32_t v);
    void write_double(double v);
    void write_bool(bool v);
    void write_string(const std::string& s);

    // Fail with "Archive::read - unexpected end of data" on a truncated archive.
    int32_t read_int32();
    double read_double();
    bool read_bool();
    // A length below 0 or beyond the data left fails with "Archive::read - bad string length: "
    // and the length, so a damaged archive never asks for gigabytes.
    std::string read_string();

private:
    void put(const unsigned char* bytes, std::size_t n);
    void get(unsigned char* bytes, std::size_t n);

    std::ostream* out_ = nullptr;
    std::istream* in_ = nullptr;
};
