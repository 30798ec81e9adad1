#ifndef CIFWARD_CIFTOKENISER_H
#define CIFWARD_CIFTOKENISER_H

#include "CifErrorList.h"
#include "CifToken.h"

#include <cstdint>
#include <istream>
#include <memory>
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
    void push_front(const CifToken& token) { queue_.push_back(token); }
    void push_front(CifToken&& token) { queue_.push_back(std::move(token)); }
    std::int32_t line_number() const { return line_number_; }

private:
    bool read_line();
    void scan_word(CifToken& token);
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
