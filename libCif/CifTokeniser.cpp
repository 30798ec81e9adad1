#include "CifTokeniser.h"

#include "CifNameCompare.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr std::size_t chunk_size = 1 << 16;

// Byte classes of the classic locale, for the 8-bit bytes of a Latin-1 stream.
enum ByteClass : unsigned char { Plain, Control, High, LineEnd };

struct ByteClasses {
    ByteClass of[256];
    ByteClasses()
    {
        for (int c = 0; c < 256; ++c) {
            if (c == '\n' || c == '\r')
                of[c] = LineEnd;
            else if (c == '\t' || c == '\v' || c == '\f')
                of[c] = Plain;
            else if (c < 32 || c == 127)
                of[c] = Control;
            else if (c >= 128)
                of[c] = High;
            else
                of[c] = Plain;
        }
    }
};
const ByteClasses byte_classes;

inline bool is_white(char c)
{
    return cif_word_classes.white[static_cast<unsigned char>(c)];
}

inline bool is_graphic(char c)
{
    const unsigned char u = static_cast<unsigned char>(c);
    return u > 32 && u < 127;
}

// Whether any of 8 bytes is below a blank or above '~': the test is exact for the word as a whole
// (borrows and carries start only at such bytes), though not for which byte it is.
inline bool has_unusual_byte(std::uint64_t w)
{
    constexpr std::uint64_t ones = 0x0101010101010101u;
    constexpr std::uint64_t highs = 0x8080808080808080u;
    return ((((w - ones * 0x20) & ~w) | w | (w + ones)) & highs) != 0;
}

// The length of the run of plain bytes that `run` begins with, up to n. Lines are mostly
// printable ASCII, tested 16 or 8 bytes at a time; a block with a tab or another unusual byte is
// looked at byte by byte from that byte on, and the scan goes on past tabs.
inline std::size_t plain_run(const unsigned char* run, std::size_t n)
{
    std::size_t k = 0;
    for (;;) {
#ifdef __SSE2__
        // As signed bytes, those below a blank and those from 128 up are all less than 0x20.
        const __m128i blank = _mm_set1_epi8(0x20);
        const __m128i del = _mm_set1_epi8(0x7f);
        while (k + 16 <= n) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(run + k));
            const int unusual =
                _mm_movemask_epi8(_mm_or_si128(_mm_cmplt_epi8(block, blank), _mm_cmpeq_epi8(block, del)));
            if (unusual != 0) {
                k += static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(unusual)));
                break;
            }
            k += 16;
        }
#endif
        while (k + 8 <= n) {
            std::uint64_t w;
            std::memcpy(&w, run + k, 8);
            if (has_unusual_byte(w))
                break;
            k += 8;
        }
        const std::size_t stop = k + 8 < n ? k + 8 : n;
        while (k < stop && byte_classes.of[run[k]] == Plain)
            ++k;
        if (k < stop || k == n)
            return k;
    }
}

// Copies without the aliasing checks of assign(): the source is never the string itself.
inline void set_text(std::string& text, const char* from, std::size_t n)
{
    text.clear();
    text.append(from, n);
}

std::string octal_escape(unsigned char c)
{
    char text[8];
    std::snprintf(text, sizeof text, "\\0%o", static_cast<unsigned>(c));
    return text;
}

} // namespace

CifTokeniser::CifTokeniser(std::istream& stream, unsigned line_limit, const HCifErrorList& errors)
    : line_limit_(line_limit), errors_(errors), stream_(stream), source_(stream.rdbuf()),
      good_(stream.good() && stream.rdbuf() != nullptr), chunk_(new char[chunk_size])
{
    std::memset(buffer_, 0, sizeof buffer_);
}

CifTokeniser::~CifTokeniser()
{
    if (source_ended_)
        stream_.setstate(std::ios::eofbit);
}

int CifTokeniser::get()
{
    if (chunk_pos_ == chunk_end_) {
        if (peek() == EOF) {
            good_ = false;
            return EOF;
        }
    }
    return static_cast<unsigned char>(chunk_[chunk_pos_++]);
}

// Looks at the next byte without taking it; meeting the end here leaves the state good, so the
// next line read meets the end in the ordinary way.
int CifTokeniser::peek()
{
    if (chunk_pos_ == chunk_end_) {
        if (source_ended_)
            return EOF;
        std::streamsize got = 0;
        try {
            got = source_->sgetn(chunk_.get(), chunk_size);
        } catch (...) {
            got = 0;
        }
        chunk_pos_ = 0;
        chunk_end_ = got > 0 ? static_cast<std::size_t>(got) : 0;
        if (chunk_end_ == 0) {
            source_ended_ = true;
            return EOF;
        }
    }
    return static_cast<unsigned char>(chunk_[chunk_pos_]);
}

bool CifTokeniser::read_line()
{
    pos_ = 0;
    if (!good_) {
        length_ = 0;
        buffer_[0] = '\0';
        return false;
    }
    int index = 0;
    for (;;) {
        // Runs of ordinary bytes are copied in one go; the byte at the soft limit, line ends,
        // control and high bytes go through the step below one at a time.
        if (chunk_pos_ < chunk_end_) {
            const unsigned char* run = reinterpret_cast<const unsigned char*>(chunk_.get()) + chunk_pos_;
            std::size_t n = chunk_end_ - chunk_pos_;
            const std::size_t room = static_cast<std::size_t>(hard_line_limit + 1 - index);
            if (n > room)
                n = room;
            if (index < static_cast<int>(line_limit_) && n > line_limit_ - static_cast<unsigned>(index))
                n = line_limit_ - static_cast<unsigned>(index);
            const std::size_t k = plain_run(run, n);
            std::memcpy(buffer_ + index, run, k);
            index += static_cast<int>(k);
            chunk_pos_ += k;
            if (index > hard_line_limit)
                break;
        }
        int c;
        if (chunk_pos_ < chunk_end_) {
            c = static_cast<unsigned char>(chunk_[chunk_pos_++]);
        } else {
            c = get();
            if (c == EOF)
                break;
        }
        unsigned char byte = static_cast<unsigned char>(c);
        const ByteClass kind = byte_classes.of[byte];
        if (kind == LineEnd) {
            if (byte == '\r' && peek() == '\n')
                ++chunk_pos_;
            break;
        }
        if (index == static_cast<int>(line_limit_))
            errors_->add(347, std::to_string(line_limit_), line_number_ + 1);
        if (kind == Control) {
            errors_->add(348, octal_escape(byte), line_number_ + 1);
            byte = ' ';
        } else if (kind == High) {
            errors_->add(349, octal_escape(byte), line_number_ + 1);
        }
        buffer_[index++] = static_cast<char>(byte);
        if (index > hard_line_limit)
            break;
    }
    ++line_number_;
    if (index > hard_line_limit) {
        errors_->add(347, std::to_string(hard_line_limit), line_number_);
        for (;;) {
            const int c = get();
            if (c == EOF || c == '\n')
                break;
            if (c == '\r') {
                if (peek() == '\n')
                    ++chunk_pos_;
                break;
            }
        }
        index = hard_line_limit;
    }
    length_ = index;
    buffer_[length_] = '\0';
    return true;
}

std::size_t CifTokeniser::take_plain_values(CifCharBuffer& chars, CifArray<std::uint32_t>& ends,
                                            std::size_t most)
{
    if (queued_ != 0)
        return 0;
    const unsigned char* at = reinterpret_cast<const unsigned char*>(buffer_) + pos_;
    // The values come from the rest of the line, which bounds their characters and their number;
    // 16 characters more let each short value be copied as one block. All is kept in locals: a
    // write through a char pointer could change any member, which the compiler would otherwise
    // load again after each.
    const std::size_t rest = static_cast<std::size_t>(length_ - pos_);
    char* const out = chars.room(static_cast<std::uint32_t>(rest + 16));
    std::uint32_t* const end_out = ends.room(rest / 2 + 1);
    const std::uint32_t base = chars.size();
    std::uint32_t written = 0;
    std::size_t taken = 0;
    while (taken < most) {
        while (cif_word_classes.white[*at])
            ++at;
        if (!cif_word_classes.plain_start[*at])
            break;
        const unsigned char* end = at + 1;
        while (!cif_word_classes.word_end[*end])
            ++end;
        const std::uint32_t n = static_cast<std::uint32_t>(end - at);
        if (n <= 16)
            std::memcpy(out + written, at, 16);
        else
            std::memcpy(out + written, at, n);
        written += n;
        end_out[taken++] = base + written;
        at = end;
    }
    chars.added(written);
    ends.added(taken);
    pos_ = static_cast<int>(reinterpret_cast<const char*>(at) - buffer_);
    return taken;
}

void CifTokeniser::push_front(const CifToken& token)
{
    if (queued_ == queue_.size())
        queue_.emplace_back();
    CifToken& slot = queue_[queued_++];
    slot.kind = token.kind;
    slot.text.assign(token.text);
    slot.line = token.line;
    slot.end_line = token.end_line;
}

void CifTokeniser::push_front(CifToken&& token)
{
    if (queued_ == queue_.size())
        queue_.emplace_back();
    CifToken& slot = queue_[queued_++];
    slot.kind = token.kind;
    slot.text.swap(token.text);
    slot.line = token.line;
    slot.end_line = token.end_line;
}

CifToken CifTokeniser::next()
{
    CifToken token;
    next(token);
    return token;
}

bool CifTokeniser::advance(CifToken& token, std::string_view* text, std::int32_t* line)
{
    if (queued_ > 0) {
        CifToken& queued = queue_[--queued_];
        token.kind = queued.kind;
        token.text.swap(queued.text);
        token.line = queued.line;
        token.end_line = queued.end_line;
        return false;
    }
    for (;;) {
        while (is_white(buffer_[pos_]))
            ++pos_;
        if (pos_ < length_) {
            if (text && take_inline_value(*text)) {
                *line = line_number_;
                return true;
            }
            scan_word(token);
            return false;
        }

        if (!read_line()) {
            token.kind = CifEnd;
            token.text.clear();
            token.line = token.end_line = line_number_;
            return false;
        }
        const bool indented = length_ > 0 && is_white(buffer_[0]);
        while (pos_ < length_ && is_white(buffer_[pos_]))
            ++pos_;
        if (pos_ == length_) {
            token.kind = CifBlank;
            token.text.clear();
            token.line = token.end_line = line_number_;
            return false;
        }
        if (buffer_[pos_] != ';')
            continue;

        // A text block: from a ';' that begins a line up to the next line that begins with ';'.
        if (indented)
            errors_->add(351, line_number_);
        token.kind = CifValueToken;
        token.line = token.end_line = line_number_;
        set_text(token.text, buffer_ + pos_ + 1, static_cast<std::size_t>(length_ - pos_ - 1));
        for (;;) {
            token.text += '\n';
            if (!read_line()) {
                errors_->add(353, line_number_);
                return false;
            }
            int close = -1;
            if (length_ > 0 && buffer_[0] == ';') {
                close = 0;
            } else if (indented) {
                int first = 0;
                while (first < length_ && is_white(buffer_[first]))
                    ++first;
                if (first < length_ && buffer_[first] == ';') {
                    errors_->add(352, line_number_);
                    close = first;
                }
            }
            if (close >= 0) {
                pos_ = close + 1;
                token.end_line = line_number_;
                return false;
            }
            token.text.append(buffer_, static_cast<std::size_t>(length_));
        }
    }
}

bool CifTokeniser::take_inline_value(std::string_view& text)
{
    const char first = buffer_[pos_];
    if (first == '#' || first == '_')
        return false;
    if (first == '"' || first == '\'') {
        for (int i = pos_ + 1; i < length_; ++i) {
            if (buffer_[i] == first && buffer_[i - 1] != '\\' &&
                (i + 1 >= length_ || !is_graphic(buffer_[i + 1]))) {
                text = std::string_view(buffer_ + pos_ + 1, static_cast<std::size_t>(i - pos_ - 1));
                pos_ = i + 1;
                return true;
            }
        }
        return false; // an unterminated quote: scan_word reports it
    }
    int end = pos_;
    while (!cif_word_classes.word_end[static_cast<unsigned char>(buffer_[end])])
        ++end;
    const std::string_view word(buffer_ + pos_, static_cast<std::size_t>(end - pos_));
    // Only a word that begins with d or l can be a heading or a loop.
    const unsigned char folded = static_cast<unsigned char>(first) | 0x20;
    if ((folded == 'd' || folded == 'l') &&
        (cif_starts_with_nocase(word, "data_") || cif_starts_with_nocase(word, "loop_")))
        return false;
    text = word;
    pos_ = end;
    return true;
}

void CifTokeniser::scan_word(CifToken& token)
{
    const char first = buffer_[pos_];
    token.line = token.end_line = line_number_;

    if (first == '"' || first == '\'') {
        const int start = pos_ + 1;
        for (int i = start; i < length_; ++i) {
            if (buffer_[i] == first && buffer_[i - 1] != '\\' &&
                (i + 1 >= length_ || !is_graphic(buffer_[i + 1]))) {
                token.kind = CifValueToken;
                set_text(token.text, buffer_ + start, static_cast<std::size_t>(i - start));
                pos_ = i + 1;
                return;
            }
        }
        errors_->add(350, std::string(1, first), line_number_);
        token.kind = CifValueToken;
        set_text(token.text, buffer_ + start, static_cast<std::size_t>(length_ - start));
        pos_ = length_;
        return;
    }

    if (first == '#') {
        token.kind = CifComment;
        set_text(token.text, buffer_ + pos_ + 1, static_cast<std::size_t>(length_ - pos_ - 1));
        pos_ = length_;
        return;
    }

    const int start = pos_;
    while (!cif_word_classes.word_end[static_cast<unsigned char>(buffer_[pos_])])
        ++pos_;
    set_text(token.text, buffer_ + start, static_cast<std::size_t>(pos_ - start));
    if (first == '_')
        token.kind = CifName;
    else if (cif_starts_with_nocase(token.text, "data_"))
        token.kind = CifHeading;
    else if (cif_starts_with_nocase(token.text, "loop_"))
        token.kind = CifLoopToken;
    else
        token.kind = CifValueToken;
}
