#include "ProgressBar.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds VVInterval(100);
constexpr std::int64_t VVWidth = 50;

}  // namespace

VDProgressBar::VDProgressBar(std::int64_t total, bool quiet)
    : total_(total),
      shown_(!quiet && total > 0 && isatty(STDERR_FILENO) != 0),
      next_(std::chrono::steady_clock::now() + VVInterval)
{
}

VDProgressBar::~VDProgressBar()
{
    if (shown_)
        std::fputs("\r\x1b[K", stderr);
}

void VDProgressBar::Advance(std::int64_t work)
{
    done_ += work;
    if (!shown_ || std::chrono::steady_clock::now() < next_)
        return;
    next_ = std::chrono::steady_clock::now() + VVInterval;
    Print();
}

void VDProgressBar::Print() const
{
    const double share = static_cast<double>(done_) / static_cast<double>(total_);
    const auto filled = static_cast<std::size_t>(share * VVWidth);
    const std::string bar = std::string(filled, '#') + std::string(static_cast<std::size_t>(VVWidth) - filled, '.');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), static_cast<int>(share * 100));
    std::fflush(stderr);
}
