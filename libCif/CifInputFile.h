#ifndef CIFWARD_CIFINPUTFILE_H
#define CIFWARD_CIFINPUTFILE_H

#include <istream>
#include <memory>
#include <string>

// A CIF opened for reading: a text file as it stands, a gzip-compressed one as its contents, so
// that a collection kept compressed is checked without unpacking it first. A file that is not
// text (an image, a PDF, another kind of archive) is refused with what it is.
class CifInputFile {
public:
    CifInputFile();
    ~CifInputFile();
    CifInputFile(const CifInputFile&) = delete;
    CifInputFile& operator=(const CifInputFile&) = delete;

    // False, with error() saying why, when the file cannot be read as CIF text.
    bool open(const std::string& path);
    // The same for bytes that arrive on a stream (standard input), which is read from as needed.
    bool open(std::istream& source);

    // The text; valid after a successful open.
    std::istream& stream() { return *stream_; }
    bool compressed() const { return compressed_; }
    // Reads what is left of the text into `text`; false on a read error.
    bool read_all(std::string& text);

    // Empty while all is well. After open, why the file was refused; after reading, why the text
    // read is not the whole file ("truncated gzip data", a read error).
    std::string error() const;

private:
    class Buffer;
    bool start(int descriptor, std::istream* source, const std::string& name);

    std::unique_ptr<Buffer> buffer_;
    std::unique_ptr<std::istream> stream_;
    std::string error_;
    bool compressed_ = false;
};

#endif
