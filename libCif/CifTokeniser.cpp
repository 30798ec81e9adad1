#include "CifTokeniser.h"

#include "CifNameCompare.h"

#include <cstdio>
#include <cstring>
#include <string>

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

// After control bytes have become blanks, a line holds no other white space than these. The
// line buffer ends in a NUL, which no line holds (control bytes are blanks by then), so scans
// stop there without a length test.
struct WordClasses {
    bool white[256] = {};
    bool word_end[256] = {};
    WordClasses()
    {
        for (unsigned char c : {' ', '\t', '\v', '\f'})
            white[c] = word_end[c] = true;
        word_end[0] = true;
    }
};
const WordClasses word_classes;

inline bool is_white(char c)
{
    return word_classes.white[static_cast<unsigned char>(c)];
}

inline bool is_graphic(char c)
{
    const unsigned char u = static_cast<unsigned char>(c);
    return u > 32 && u < 127;
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
    buffer_[0] = '\0';
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
            std::size_t k = 0;
            while (k < n && byte_classes.of[run[k]] == Plain)
                ++k;
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
            errors_->add(CifError(347, std::to_string(line_limit_), line_number_ + 1));
        if (kind == Control) {
            errors_->add(CifError(348, octal_escape(byte), line_number_ + 1));
            byte = ' ';
        } else if (kind == High) {
            errors_->add(CifError(349, octal_escape(byte), line_number_ + 1));
        }
        buffer_[index++] = static_cast<char>(byte);
        if (index > hard_line_limit)
            break;
    }
    ++line_number_;
    if (index > hard_line_limit) {
        errors_->add(CifError(347, std::to_string(hard_line_limit), line_number_));
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

CifToken CifTokeniser::next()
{
    CifToken token;
    next(token);
    return token;
}

void CifTokeniser::next(CifToken& token)
{
    if (!queue_.empty()) {
        token = std::move(queue_.back());
        queue_.pop_back();
        return;
    }
    for (;;) {
        while (is_white(buffer_[pos_]))
            ++pos_;
        if (pos_ < length_) {
            scan_word(token);
            return;
        }

        if (!read_line()) {
            token.kind = CifEnd;
            token.text.clear();
            token.line = token.end_line = line_number_;
            return;
        }
        const bool indented = length_ > 0 && is_white(buffer_[0]);
        while (pos_ < length_ && is_white(buffer_[pos_]))
            ++pos_;
        if (pos_ == length_) {
            token.kind = CifBlank;
            token.text.clear();
            token.line = token.end_line = line_number_;
            return;
        }
        if (buffer_[pos_] != ';')
            continue;

        // A text block: from a ';' that begins a line up to the next line that begins with ';'.
        if (indented)
            errors_->add(CifError(351, line_number_));
        token.kind = CifValueToken;
        token.line = token.end_line = line_number_;
        set_text(token.text, buffer_ + pos_ + 1, static_cast<std::size_t>(length_ - pos_ - 1));
        for (;;) {
            token.text += '\n';
            if (!read_line()) {
                errors_->add(CifError(353, line_number_));
                return;
            }
            int close = -1;
            if (length_ > 0 && buffer_[0] == ';') {
                close = 0;
            } else if (indented) {
                int first = 0;
                while (first < length_ && is_white(buffer_[first]))
                    ++first;
                if (first < length_ && buffer_[first] == ';') {
                    errors_->add(CifError(352, line_number_));
                    close = first;
                }
            }
            if (close >= 0) {
                pos_ = close + 1;
                token.end_line = line_number_;
                return;
            }
            token.text.append(buffer_, static_cast<std::size_t>(length_));
        }
    }
}

bool CifTokeniser::inline_value_at(int& start, int& length, int& next_pos)
{
    if (!queue_.empty())
        return false;
    while (is_white(buffer_[pos_]))
        ++pos_;
    if (pos_ >= length_)
        return false;
    const char first = buffer_[pos_];
    if (first == '#' || first == '_')
        return false;
    if (first == '"' || first == '\'') {
        for (int i = pos_ + 1; i < length_; ++i) {
            if (buffer_[i] == first && buffer_[i - 1] != '\\' &&
                (i + 1 >= length_ || !is_graphic(buffer_[i + 1]))) {
                start = pos_ + 1;
                length = i - start;
                next_pos = i + 1;
                return true;
            }
        }
        return false; // an unterminated quote: next() reports it
    }
    int end = pos_;
    while (!word_classes.word_end[static_cast<unsigned char>(buffer_[end])])
        ++end;
    const std::string_view word(buffer_ + pos_, static_cast<std::size_t>(end - pos_));
    if (cif_starts_with_nocase(word, "data_") || cif_starts_with_nocase(word, "loop_"))
        return false;
    start = pos_;
    length = end - pos_;
    next_pos = end;
    return true;
}

bool CifTokeniser::next_inline_value(std::string_view& text, std::int32_t& line)
{
    int start = 0, length = 0, next_pos = 0;
    if (!inline_value_at(start, length, next_pos))
        return false;
    text = std::string_view(buffer_ + start, static_cast<std::size_t>(length));
    line = line_number_;
    pos_ = next_pos;
    return true;
}

bool CifTokeniser::inline_value_follows()
{
    int start = 0, length = 0, next_pos = 0;
    return inline_value_at(start, length, next_pos);
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
        errors_->add(CifError(350, std::string(1, first), line_number_));
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
    while (!word_classes.word_end[static_cast<unsigned char>(buffer_[pos_])])
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
