#pragma once

#include "WavEncoding.h"
#include "WavFrames.h"
#include "WavLayout.h"
#include "WavTexts.h"

#include <sndfile.h>

#include <memory>
#include <string>

/// A file open for reading through libsndfile, of any encoding that libsndfile knows. Samples of whole numbers are scaled
/// to -1..1.
class WavReader final : public WavFrames
{
public:
    /// @param io  open on the same file; needed during the call only
    /// @return null, recorded, if the file can't be read
    static std::unique_ptr<WavReader> Open(VDIo& io, const char* routine);
    static std::unique_ptr<WavReader> Open(const char* filename, const char* routine);

    int GetNumChannels() const override { return info_.channels; }
    std::uint32_t GetSampleRate() const override { return static_cast<std::uint32_t>(info_.samplerate); }
    std::int64_t GetNumFrames() const override { return frames_; }
    bool Read(std::int64_t first, std::int64_t count, float* values, const char* routine) override;
    bool Read(std::int64_t first, std::int64_t count, double* values, const char* routine) override;
    bool Write(std::int64_t first, std::int64_t count, const float* values, const char* routine) override;
    bool Write(std::int64_t first, std::int64_t count, const double* values, const char* routine) override;

    const WavLayout& GetLayout() const { return layout_; }
    const WavTexts& GetTexts() const { return texts_; }
    /// Name of the encoding, for instance "Signed 16 bit PCM".
    std::string GetEncoding() const { return WavEncoding::GetName(info_.format); }
    /// Whole numbers, which are scaled to -1..1, so that this is the full scale.
    bool IsScaled() const;
    /// The values need more than the precision of a float.
    bool IsWide() const;

private:
    struct Closer
    {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };

    WavReader() = default;
    bool SetFramesPresent(const char* routine);
    bool FailToWrite(const char* routine) const;
    template <class T, class ReadFunction>
    bool ReadFrames(std::int64_t first, std::int64_t count, T* values, const char* routine, ReadFunction readFunction);

    std::string filename_;
    WavLayout layout_;
    SF_INFO info_{};
    WavTexts texts_;
    std::int64_t frames_ = 0;
    std::unique_ptr<SNDFILE, Closer> file_;
};

/// Writes the header of a new file without frames; what stands under this name is replaced.
/// @return false, recorded, on failure
bool WavCreateFile(const char* filename, const WavFormat::Type& type, const WavEncoding& encoding, int channels,
                   const char* routine);
