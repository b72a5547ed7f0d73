#include "WavWriter.h"

#include "WavReader.h"
#include "WavReport.h"

#include <algorithm>
#include <bit>

static_assert(std::endian::native == std::endian::little, "frames are written as they lie in memory");

namespace {

/// What a RIFF header can say, with room for chunks that other programs add.
constexpr std::int64_t VVMaxWavBytes = 0xffffffff - 65536;
constexpr std::int64_t VVMaxBytes = std::int64_t{1} << 62;

}  // namespace

std::unique_ptr<WavWriter> WavWriter::Create(const char* filename, const WavFormat::Type& type, int channels,
                                             const char* routine)
{
    std::unique_ptr<WavWriter> writer(new WavWriter(filename));
    if (!WavCreateFile(filename, type, channels, routine) || !writer->Open(routine))
        return nullptr;
    writer->headerIsOld_ = true;
    return writer;
}

std::unique_ptr<WavWriter> WavWriter::Update(const char* filename, const char* routine)
{
    std::unique_ptr<WavWriter> writer(new WavWriter(filename));
    return writer->Open(routine) ? std::move(writer) : nullptr;
}

bool WavWriter::Fail(int code, const char* routine, const std::string& detail, int chain) const
{
    return WavReport(code, routine, io_.GetFilename().Str(), detail, chain) != 0;
}

bool WavWriter::Open(const char* routine)
{
    if (!io_.Open(VTOpenUpdate))
        return Fail(WavError::Open, routine, {}, 1);
    if (!layout_.Read(io_, routine))
        return false;
    if (!layout_.IsPlainFloat())
        return Fail(WavError::NotWritable, routine, "Only files of 32-bit float values can be changed.");
    rate_ = layout_.GetSampleRate();
    frames_ = layout_.GetDataBytes() / layout_.GetFrameBytes();
    return true;
}

bool WavWriter::Read(std::int64_t first, std::int64_t count, float* values, const char* routine)
{
    const std::int64_t wanted = std::clamp<std::int64_t>(frames_ - first, 0, count);
    if (wanted > 0 && !io_.Read(Offset(first), wanted * layout_.GetFrameBytes(), values, nullptr))
        return Fail(WavError::Read, routine, {}, 1);
    std::fill(values + wanted * GetNumChannels(), values + count * GetNumChannels(), 0.0F);
    return true;
}

bool WavWriter::Read(std::int64_t first, std::int64_t count, double* values, const char* routine)
{
    narrow_.resize(static_cast<std::size_t>(count * GetNumChannels()));
    if (!Read(first, count, narrow_.data(), routine))
        return false;
    std::copy(narrow_.begin(), narrow_.end(), values);
    return true;
}

bool WavWriter::Write(std::int64_t first, std::int64_t count, const float* values, const char* routine)
{
    if (!CheckNumFrames(first + count, routine))
        return false;
    headerIsOld_ = true;
    if (!layout_.DropPeaks(io_) || !io_.Write(Offset(first), count * layout_.GetFrameBytes(), values))
        return Fail(WavError::Write, routine, {}, 1);
    frames_ = std::max(frames_, first + count);
    return true;
}

void WavWriter::SetSampleRate(std::uint32_t rate)
{
    headerIsOld_ = headerIsOld_ || rate != rate_;
    rate_ = rate;
}

bool WavWriter::CheckNumFrames(std::int64_t frames, const char* routine) const
{
    if (frames <= frames_)
        return true;
    const bool wav = layout_.GetType()->subId == WavFormat::Wav;
    if (frames > ((wav ? VVMaxWavBytes : VVMaxBytes) - layout_.GetDataOffset()) / layout_.GetFrameBytes())
        return Fail(WavError::Write, routine, "A WAV file holds at most 4 GiB; RF64 and W64 files hold more.");
    if (layout_.HasChunksBehindData())
        return Fail(WavError::NotWritable, routine, "Further content follows the data, which can't be lengthened.");
    return true;
}

bool WavWriter::Extend(std::int64_t frames, const char* routine)
{
    constexpr char zero = 0;
    if (frames <= frames_)
        return true;
    if (!CheckNumFrames(frames, routine))
        return false;
    headerIsOld_ = true;
    if (!io_.Write(Offset(frames) - 1, 1, &zero))
        return Fail(WavError::Write, routine, {}, 1);
    frames_ = frames;
    return true;
}

bool WavWriter::Flush(const char* routine)
{
    if (!headerIsOld_)
        return true;
    if (!layout_.DropPeaks(io_) || !layout_.WriteHeader(io_, frames_, rate_))
        return Fail(WavError::Write, routine, {}, 1);
    headerIsOld_ = false;
    return true;
}

bool WavWriter::Close(const char* routine)
{
    const bool flushed = Flush(routine);
    if (!io_.Close())
        return Fail(WavError::Close, routine, {}, 1);
    return flushed;
}
