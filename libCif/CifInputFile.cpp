#include "CifInputFile.h"

#include "CifFileSignature.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <streambuf>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace {
constexpr std::size_t chunk_size = 1 << 16;
} // namespace

// The bytes of the file from a descriptor or a stream, the bytes already looked at first, and
// inflated on the way when the file is gzip-compressed. A caller's large read is filled in place,
// so plain text is copied once, from the system into the reader's own buffer.
class CifInputFile::Buffer : public std::streambuf {
public:
    Buffer(int descriptor, std::istream* source, std::string head, bool gzip)
        : descriptor_(descriptor), source_(source), head_(std::move(head)), gzip_(gzip)
    {
        if (gzip_) {
            std::memset(&z_, 0, sizeof z_);
            // 16 + the largest window: the gzip wrapper, checked trailer and all.
            if (inflateInit2(&z_, 16 + MAX_WBITS) != Z_OK) {
                error_ = "cannot start decompressing";
                ended_ = true;
                gzip_ = false;
            } else {
                packed_.reset(new char[chunk_size]);
            }
        }
    }
    ~Buffer() override
    {
        if (gzip_)
            inflateEnd(&z_);
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    const std::string& error() const { return error_; }
    // Gives the descriptor up to a buffer that goes on reading from it.
    int release()
    {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        return descriptor;
    }

protected:
    int_type underflow() override
    {
        if (gptr() < egptr())
            return traits_type::to_int_type(*gptr());
        // Only a reader that takes a character at a time needs this buffer; the CIF reader asks
        // for whole chunks, which xsgetn fills in place.
        if (!chars_)
            chars_.reset(new char[chunk_size]);
        const std::streamsize n = fill(chars_.get(), static_cast<std::streamsize>(chunk_size));
        if (n <= 0)
            return traits_type::eof();
        setg(chars_.get(), chars_.get(), chars_.get() + n);
        return traits_type::to_int_type(*gptr());
    }

    std::streamsize xsgetn(char* to, std::streamsize n) override
    {
        std::streamsize done = 0;
        const std::streamsize buffered = std::min<std::streamsize>(n, egptr() - gptr());
        if (buffered > 0) {
            std::memcpy(to, gptr(), static_cast<std::size_t>(buffered));
            gbump(static_cast<int>(buffered));
            done = buffered;
        }
        while (done < n) {
            const std::streamsize got = fill(to + done, n - done);
            if (got <= 0)
                break;
            done += got;
        }
        return done;
    }

private:
    // Up to n bytes of text; 0 at the end or after an error.
    std::streamsize fill(char* to, std::streamsize n)
    {
        if (ended_)
            return 0;
        if (!gzip_) {
            const std::streamsize got = read_raw(to, static_cast<std::size_t>(n));
            if (got <= 0)
                ended_ = true;
            return got > 0 ? got : 0;
        }
        z_.next_out = reinterpret_cast<Bytef*>(to);
        z_.avail_out = static_cast<uInt>(n);
        while (z_.avail_out > 0) {
            if (z_.avail_in == 0) {
                const std::streamsize got = read_raw(packed_.get(), chunk_size);
                if (got <= 0) {
                    if (got == 0 && !member_ended_)
                        error_ = "truncated gzip data";
                    ended_ = true;
                    break;
                }
                z_.next_in = reinterpret_cast<Bytef*>(packed_.get());
                z_.avail_in = static_cast<uInt>(got);
            }
            if (member_ended_) {
                // gzip writes files of several members end to end; what follows the last member
                // and is no member (padding from a tape, say) is not text and is left alone.
                if (z_.next_in[0] != 0x1F) {
                    ended_ = true;
                    break;
                }
                inflateReset(&z_);
                member_ended_ = false;
            }
            const int result = inflate(&z_, Z_NO_FLUSH);
            if (result == Z_STREAM_END) {
                member_ended_ = true;
            } else if (result != Z_OK && result != Z_BUF_ERROR) {
                error_ = std::string("damaged gzip data") + (z_.msg ? std::string(" (") + z_.msg + ")" : "");
                ended_ = true;
                break;
            }
        }
        return n - static_cast<std::streamsize>(z_.avail_out);
    }

    // The file's own bytes: the head first, then the descriptor or stream. -1 on a read error.
    std::streamsize read_raw(char* to, std::size_t n)
    {
        if (head_used_ < head_.size()) {
            const std::size_t k = std::min(n, head_.size() - head_used_);
            std::memcpy(to, head_.data() + head_used_, k);
            head_used_ += k;
            return static_cast<std::streamsize>(k);
        }
        if (source_) {
            source_->read(to, static_cast<std::streamsize>(n));
            if (source_->bad()) {
                error_ = "read error";
                return -1;
            }
            return source_->gcount();
        }
        for (;;) {
            const ssize_t got = ::read(descriptor_, to, n);
            if (got >= 0)
                return got;
            if (errno != EINTR) {
                error_ = std::strerror(errno);
                return -1;
            }
        }
    }

    int descriptor_;
    std::istream* source_;
    std::string head_;
    std::size_t head_used_ = 0;
    bool gzip_;
    bool ended_ = false;
    bool member_ended_ = false;
    z_stream z_;
    std::unique_ptr<char[]> packed_;
    std::unique_ptr<char[]> chars_;
    std::string error_;
};

CifInputFile::CifInputFile() = default;

CifInputFile::~CifInputFile()
{
    // The stream refers to the buffer, so it goes first.
    stream_.reset();
}

std::string CifInputFile::error() const
{
    if (!error_.empty() || !buffer_)
        return error_;
    return buffer_->error();
}

bool CifInputFile::open(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        error_ = std::strerror(errno);
        return false;
    }
    struct stat status;
    if (::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        error_ = std::strerror(EISDIR);
        return false;
    }
    return start(descriptor, nullptr, path);
}

bool CifInputFile::open(std::istream& source)
{
    return start(-1, &source, std::string());
}

bool CifInputFile::start(int descriptor, std::istream* source, const std::string& name)
{
    // The head is read through the same buffer, with nothing to serve yet and no inflating, so
    // that a pipe, which cannot be read twice, gives its first bytes to the text all the same.
    auto probe = std::make_unique<Buffer>(descriptor, source, std::string(), false);
    std::string head(CifFileSignature::head_size, '\0');
    const std::streamsize got = probe->sgetn(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(got));
    if (!probe->error().empty()) {
        error_ = probe->error();
        return false;
    }
    const CifFileSignature signature = CifFileSignature::of(head);
    const bool gz_name = name.size() > 3 && name.compare(name.size() - 3, 3, ".gz") == 0;
    if (signature.kind == CifFileSignature::Binary) {
        error_ = signature.reason;
        return false;
    }
    if (gz_name && signature.kind != CifFileSignature::Gzip) {
        error_ = "not in gzip format";
        return false;
    }
    compressed_ = signature.kind == CifFileSignature::Gzip;
    // The descriptor now belongs to the buffer that serves the text.
    buffer_ = std::make_unique<Buffer>(probe->release(), source, std::move(head), compressed_);
    stream_ = std::make_unique<std::istream>(buffer_.get());
    if (!buffer_->error().empty()) {
        error_ = buffer_->error();
        return false;
    }
    return true;
}

bool CifInputFile::read_all(std::string& text)
{
    char chunk[chunk_size];
    for (;;) {
        const std::streamsize got = buffer_->sgetn(chunk, sizeof chunk);
        if (got <= 0)
            break;
        text.append(chunk, static_cast<std::size_t>(got));
    }
    return buffer_->error().empty();
}
