#ifndef CIFWARD_CIFTOKENISER_H
#define CIFWARD_CIFTOKENISER_H

#include "CifErrorList.h"
#include "CifToken.h"

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>
#include <vector>

// Reads a stream line by line and gives CIF tokens one at a time. Lines are kept in a fixed
// buffer: characters past the hard limit are dropped with a warning.
class CifTokeniser {
public:
    static constexpr int hard_line_limit = 2048;

    CifTokeniser(std::istream& stream, unsigned line_limit, const HCifErrorList& errors);
    ~CifTokeniser();

    CifToken next();
    void next(CifToken& token);
    // The next token, when it is a value that lies on the current line (a bare word or a closed
    // quoted string), as a view into the line that lasts until the next call: the values of a
    // loop are taken this way without a copy. False, with nothing consumed, for anything else,
    // which next() then gives.
    bool next_inline_value(std::string_view& text, std::int32_t& line);
    // Whether next_inline_value would give a value, without taking it.
    bool inline_value_follows();
    void push_front(const CifToken& token) { queue_.push_back(token); }
    void push_front(CifToken&& token) { queue_.push_back(std::move(token)); }
    std::int32_t line_number() const { return line_number_; }

private:
    bool read_line();
    void scan_word(CifToken& token);
    // Where the inline value at `pos_` ends and what it holds; false if it is no such value.
    bool inline_value_at(int& start, int& length, int& next_pos);
    int get();
    int peek();

    unsigned line_limit_;
    HCifErrorList errors_;
    // Tokens put back, the next one to give last: a vector keeps its room, where a deque would
    // allocate and free as tokens come and go.
    std::vector<CifToken> queue_;
    std::istream& stream_;
    std::streambuf* source_;
    std::int32_t line_number_ = 0;
    char buffer_[hard_line_limit + 2];
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
