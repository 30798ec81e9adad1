#ifndef CIFWARD_PROGRESSLINE_H
#define CIFWARD_PROGRESSLINE_H

#include <chrono>
#include <cstddef>
#include <ostream>

// A line on a terminal that tells how far a long run has come ("cifward-check: 1200 of 50000
// files, 830 files/s"), drawn over itself and erased at the end. A short run never shows it.
// When the report goes to the same terminal, the report's text is let out before the line is
// drawn again, so the two never end up on one line.
class ProgressLine {
public:
    ProgressLine(std::ostream& terminal, std::ostream& report, std::size_t total);
    ~ProgressLine() { erase(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Counts one more file done; draws the line when it is due.
    void file_done();
    // Takes the line away, so that a message can be written to the terminal.
    void erase();

private:
    using Clock = std::chrono::steady_clock;

    std::ostream& terminal_;
    std::ostream& report_;
    std::size_t total_;
    std::size_t done_ = 0;
    Clock::time_point start_ = Clock::now();
    Clock::time_point drawn_at_ = start_;
    bool shown_ = false;
};

#endif
