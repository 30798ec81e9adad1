#ifndef CIFWARD_CIFTOKENISER_H
#define CIFWARD_CIFTOKENISER_H

#include "CifErrorList.h"
#include "CifToken.h"
#include "CifValueList.h"

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>
#include <vector>

// After control bytes have become blanks, a line holds no other white space than these. The
// line buffer ends in a NUL, which no line holds (control bytes are blanks by then), so scans
// stop there without a length test.
struct CifWordClasses {
    bool white[256] = {};
    bool word_end[256] = {};
    // What may begin a bare value that the quick path of next_value takes: anything but white
    // space, the line's end, a comment, a name, a quote, and the first letters of data_ and loop_.
    bool plain_start[256] = {};
    constexpr CifWordClasses()
    {
        for (int c = 0; c < 256; ++c)
            plain_start[c] = true;
        for (unsigned char c : {' ', '\t', '\v', '\f'})
            white[c] = word_end[c] = true;
        word_end[0] = true;
        for (unsigned char c : {' ', '\t', '\v', '\f', '\0', '#', '_', '"', '\'', 'd', 'D', 'l', 'L'})
            plain_start[c] = false;
    }
};
inline constexpr CifWordClasses cif_word_classes{};

// Reads a stream line by line and gives CIF tokens one at a time. Lines are kept in a fixed
// buffer: characters past the hard limit are dropped with a warning.
class CifTokeniser {
public:
    static constexpr int hard_line_limit = 2048;

    CifTokeniser(std::istream& stream, unsigned line_limit, const HCifErrorList& errors);
    ~CifTokeniser();

    CifToken next();
    void next(CifToken& token) { advance(token, nullptr, nullptr); }
    // As next(), except that a value lying on its line (a bare word or a closed quoted string)
    // comes as a view into the line, valid until the next call, and true: the values of a loop
    // are taken this way without a copy. False for any other token, which is in `token`.
    bool next_value(CifToken& token, std::string_view& text, std::int32_t& line)
    {
        // Most values of a loop are bare words that follow another on the same line.
        if (queued_ == 0) {
            const char* at = buffer_ + pos_;
            while (cif_word_classes.white[static_cast<unsigned char>(*at)])
                ++at;
            if (cif_word_classes.plain_start[static_cast<unsigned char>(*at)]) {
                const char* end = at + 1;
                while (!cif_word_classes.word_end[static_cast<unsigned char>(*end)])
                    ++end;
                text = std::string_view(at, static_cast<std::size_t>(end - at));
                pos_ = static_cast<int>(end - buffer_);
                line = line_number_;
                return true;
            }
        }
        return advance(token, &text, &line);
    }
    // Takes the bare words that follow on the line, up to `most` of them, onto the end of
    // `chars`, and where each ends into `ends`: the loop reader's quick way through rows of plain
    // numbers and words. A value is taken only when next_value would give it as a bare word; the
    // first that it would not stops the run. Gives the number taken.
    std::size_t take_plain_values(CifCharBuffer& chars, CifArray<std::uint32_t>& ends, std::size_t most);
    void push_front(const CifToken& token);
    // Takes the token's text and leaves it another text to reuse, whose room saves allocating
    // the next one.
    void push_front(CifToken&& token);
    std::int32_t line_number() const { return line_number_; }

private:
    bool advance(CifToken& token, std::string_view* text, std::int32_t* line);
    bool read_line();
    void scan_word(CifToken& token);
    // Takes the value at `pos_`, which is no blank, when it lies on the line; false, with nothing
    // taken, for anything else.
    bool take_inline_value(std::string_view& text);
    int get();
    int peek();

    unsigned line_limit_;
    HCifErrorList errors_;
    // Tokens put back, the next one to give last: the first queued_ of queue_. The others are
    // kept, with their texts' room, for the tokens put back later.
    std::vector<CifToken> queue_;
    std::size_t queued_ = 0;
    std::istream& stream_;
    std::streambuf* source_;
    std::int32_t line_number_ = 0;
    // 16 bytes past the longest line, so that a short value near the end can be copied as one
    // 16-byte block.
    char buffer_[hard_line_limit + 2 + 16];
    int length_ = 0;
    int pos_ = 0;
    bool good_;

    // Bytes taken from the stream in blocks: reading them one call at a time would cost more
    // than the whole tokenising.
    std::unique_ptr<char[]> chunk_;
    std::size_t chunk_pos_ = 0;
    std::size_t chunk_end_ = 0;
    bool source_ended_ = false;
};

#endif
