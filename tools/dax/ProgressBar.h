#pragma once

#include <chrono>
#include <cstdint>

/// How far a long operation has come, on one line of the standard error. Nothing is printed where that is no terminal.
class VDProgressBar
{
public:
    /// @param total  work to do
    /// @param quiet  prints nothing
    VDProgressBar(std::int64_t total, bool quiet);
    /// Clears the line.
    ~VDProgressBar();
    VDProgressBar(const VDProgressBar&) = delete;
    VDProgressBar& operator=(const VDProgressBar&) = delete;

    void Advance(std::int64_t work);

private:
    void Print() const;

    std::int64_t total_;
    std::int64_t done_ = 0;
    bool shown_;
    std::chrono::steady_clock::time_point next_;
};
