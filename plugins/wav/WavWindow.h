#pragma once

#include "WavFrames.h"

#include <algorithm>
#include <vector>

/// A run of frames in memory between callers, who move one channel at a time, and the file, where the channels lie
/// interleaved. Reading all channels block by block decodes each block once, and writing them so writes each block once.
/// Whatever the order of the calls, the result is the same; an order that jumps costs more reading and writing.
/// The memory stays below `MaxBytes` (or one frame, if that is more).
template <class T>
class WavWindow
{
public:
    static constexpr std::int64_t MaxBytes = 4 << 20;

    /// @param frames  of the open file; outlives the window
    explicit WavWindow(WavFrames& frames)
        : frames_(frames),
          channels_(frames.GetNumChannels()),
          capacity_(std::max<std::int64_t>(1, MaxBytes / static_cast<std::int64_t>(sizeof(T)) / channels_))
    {
    }

    /// Frames that fit.
    std::int64_t GetCapacity() const { return capacity_; }
    /// Number of frames of the file, with those that aren't written yet.
    std::int64_t GetNumFrames() const { return std::max(frames_.GetNumFrames(), dirty_ ? first_ + size_ : 0); }

    bool Get(int channel, std::int64_t first, std::int64_t count, T* values, const char* routine)
    {
        for (std::int64_t done = 0; done < count;) {
            const std::int64_t part = std::min(count - done, capacity_);
            if (!Cover(first + done, part, routine))
                return false;
            const T* from = At(channel, first + done);
            for (std::int64_t index = 0; index < part; ++index)
                values[done + index] = from[index * channels_];
            done += part;
        }
        return true;
    }

    template <class Source>
    bool Put(int channel, std::int64_t first, std::int64_t count, const Source* values, const char* routine)
    {
        for (std::int64_t done = 0; done < count;) {
            const std::int64_t part = std::min(count - done, capacity_);
            if (!Cover(first + done, part, routine))
                return false;
            dirty_ = true;
            T* to = At(channel, first + done);
            for (std::int64_t index = 0; index < part; ++index)
                to[index * channels_] = static_cast<T>(values[done + index]);
            done += part;
        }
        return true;
    }

    /// Writes what was put. After a failure the frames are still here, and the next flush tries again.
    bool Flush(const char* routine)
    {
        if (dirty_ && !frames_.Write(first_, size_, values_.data(), routine))
            return false;
        dirty_ = false;
        return true;
    }

    /// Forgets the frames, which have changed in the file.
    void Forget() { size_ = 0; }

private:
    /// A read of a few points fetches this many frames.
    static constexpr std::int64_t MinFrames = 4096;

    T* At(int channel, std::int64_t frame) { return values_.data() + (frame - first_) * channels_ + channel; }

    /// Makes the frames lie in the window.
    bool Cover(std::int64_t first, std::int64_t count, const char* routine)
    {
        if (first >= first_ && first + count <= first_ + size_)
            return true;
        const bool joins = dirty_ && first >= first_ && first <= first_ + size_ && first + count - first_ <= capacity_;
        if (joins)
            return Load(first_ + size_, first + count, routine);
        if (!Flush(routine))
            return false;
        first_ = first;
        size_ = 0;
        const std::int64_t ahead = std::min({capacity_, MinFrames, frames_.GetNumFrames() - first});
        return Load(first, first + std::max(count, ahead), routine);
    }

    /// Appends frames to the window, which ends at `first`.
    bool Load(std::int64_t first, std::int64_t end, const char* routine)
    {
        values_.resize(static_cast<std::size_t>((end - first_) * channels_));
        if (!frames_.Read(first, end - first, values_.data() + (first - first_) * channels_, routine))
            return false;
        size_ = end - first_;
        return true;
    }

    WavFrames& frames_;
    const int channels_;
    const std::int64_t capacity_;
    std::vector<T> values_;
    std::int64_t first_ = 0;
    std::int64_t size_ = 0;
    bool dirty_ = false;
};
