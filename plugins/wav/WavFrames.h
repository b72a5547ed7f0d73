#pragma once

#include <cstdint>

/// The frames of an open file, one after another: a frame is one value of each channel. Frames count from 0.
class WavFrames
{
public:
    virtual ~WavFrames() = default;

    virtual int GetNumChannels() const = 0;
    virtual std::uint32_t GetSampleRate() const = 0;
    /// Frames that the file holds now.
    virtual std::int64_t GetNumFrames() const = 0;
    /// Reads frames; those behind the end are zeros. False, recorded, on failure; `routine` is the report's.
    virtual bool Read(std::int64_t first, std::int64_t count, float* values, const char* routine) = 0;
    virtual bool Read(std::int64_t first, std::int64_t count, double* values, const char* routine) = 0;
    /// Writes frames in place or behind the end.
    virtual bool Write(std::int64_t first, std::int64_t count, const float* values, const char* routine) = 0;
    virtual bool Write(std::int64_t first, std::int64_t count, const double* values, const char* routine) = 0;
};
