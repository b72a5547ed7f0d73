#pragma once

#include "WavEncoding.h"
#include "WavFrames.h"
#include "WavLayout.h"
#include "WavTexts.h"

#include <memory>
#include <string>
#include <vector>

/// A file of uncompressed samples open for reading and writing in place. libsndfile makes the header of a new file; from
/// then on the frames go straight to their place, so that the chunks of a file that something else wrote stay as they are
/// and each value is in the file as it is. The header is brought up to date by `Flush`. A file whose writer was killed has
/// the header of its last flush; the reader finds what stands behind it when that header says 0.
class WavWriter final : public WavFrames
{
public:
    /// Makes a new file; what stands under this name is replaced.
    /// @return null, recorded, on failure
    static std::unique_ptr<WavWriter> Create(const char* filename, const WavFormat::Type& type, const WavEncoding& encoding,
                                             const WavTexts& texts, int channels, const char* routine);
    /// Opens an existing file, which must be of an encoding that can be written.
    /// @return null, recorded, on failure
    static std::unique_ptr<WavWriter> Update(const char* filename, const char* routine);

    int GetNumChannels() const override { return layout_.GetNumChannels(); }
    std::uint32_t GetSampleRate() const override { return rate_; }
    std::int64_t GetNumFrames() const override { return frames_; }
    bool Read(std::int64_t first, std::int64_t count, float* values, const char* routine) override;
    bool Read(std::int64_t first, std::int64_t count, double* values, const char* routine) override;
    /// The values must fit the encoding.
    bool Write(std::int64_t first, std::int64_t count, const float* values, const char* routine) override;
    bool Write(std::int64_t first, std::int64_t count, const double* values, const char* routine) override;

    const WavLayout& GetLayout() const { return layout_; }
    const WavEncoding& GetEncoding() const { return *encoding_; }
    void SetSampleRate(std::uint32_t rate);
    /// The texts of a file that was created. Those that its header doesn't have come to stand behind the data when it is
    /// closed.
    void SetTexts(const WavTexts& texts) { lateChunk_ = texts.MakeChunk(); }
    /// Whether the file may come to hold this many frames; a refusal is recorded.
    bool CheckNumFrames(std::int64_t frames, const char* routine) const;
    /// Lengthens the file with zeros.
    bool Extend(std::int64_t frames, const char* routine);
    bool Flush(const char* routine);
    bool Close(const char* routine);

private:
    explicit WavWriter(const char* filename) : io_(filename) {}
    bool Open(const char* routine);
    bool Fail(int code, const char* routine, const std::string& detail, int chain = 0) const;
    template <class T>
    bool ReadFrames(std::int64_t first, std::int64_t count, T* values, const char* routine);
    template <class T>
    bool WriteFrames(std::int64_t first, std::int64_t count, const T* values, const char* routine);
    /// Whether the values lie in the file as they lie in memory.
    template <class T>
    bool IsPlain() const
    {
        return encoding_->isFloat && encoding_->GetBytes() == static_cast<std::int64_t>(sizeof(T));
    }
    bool FillGap(std::int64_t end);
    bool AppendTexts(const char* routine);
    std::int64_t Offset(std::int64_t frame) const { return layout_.GetDataOffset() + frame * layout_.GetFrameBytes(); }

    VDIo io_;
    WavLayout layout_;
    std::uint32_t rate_ = 0;
    std::int64_t frames_ = 0;
    bool headerIsOld_ = false;
    const WavEncoding* encoding_ = nullptr;
    std::vector<unsigned char> bytes_;  ///< encoded frames on their way
    std::string chunk_;                 ///< texts that stand in the header
    std::string lateChunk_;             ///< those that are to stand in the file
};
