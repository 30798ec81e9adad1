#include "ProgressLine.h"

#include <cstdio>

namespace {
// Nothing is shown for a run shorter than this, and the line is drawn at most this often after.
constexpr std::chrono::milliseconds first_draw(500);
constexpr std::chrono::milliseconds redraw(100);
} // namespace

ProgressLine::ProgressLine(std::ostream& terminal, std::ostream& report, std::size_t total)
    : terminal_(terminal), report_(report), total_(total)
{
}

void ProgressLine::file_done()
{
    ++done_;
    const Clock::time_point now = Clock::now();
    if (now - start_ < first_draw || (shown_ && now - drawn_at_ < redraw) || done_ == total_)
        return;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    char line[128];
    std::snprintf(line, sizeof line, "cifward-check: %zu of %zu files, %.0f files/s", done_, total_,
                  seconds > 0 ? static_cast<double>(done_) / seconds : 0.0);
    erase();
    report_.flush();
    terminal_ << line << std::flush;
    shown_ = true;
    drawn_at_ = now;
}

void ProgressLine::erase()
{
    if (!shown_)
        return;
    // Back to the start of the line, and clear it to its end.
    terminal_ << "\r\033[K" << std::flush;
    shown_ = false;
}
