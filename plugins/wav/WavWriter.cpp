#include "WavWriter.h"

#include "WavReader.h"
#include "WavReport.h"

#include <algorithm>

namespace {

/// What a RIFF header can say.
constexpr std::int64_t VVMaxRiffBytes = 0xffffffff;
/// The same with room for chunks behind the data.
constexpr std::int64_t VVMaxWavBytes = VVMaxRiffBytes - 65536;
constexpr std::int64_t VVMaxBytes = std::int64_t{1} << 62;

}  // namespace

std::unique_ptr<WavWriter> WavWriter::Create(const char* filename, const WavFormat::Type& type, const WavEncoding& encoding,
                                             const WavTexts& texts, int channels, const char* routine)
{
    std::unique_ptr<WavWriter> writer(new WavWriter(filename));
    if (!WavCreateFile(filename, type, encoding, channels, routine) || !writer->Open(routine))
        return nullptr;
    const std::string chunk = type.HasTexts() ? texts.MakeChunk() : std::string();
    if (!chunk.empty() && !writer->layout_.InsertChunk(writer->io_, chunk, routine)) {
        writer->Fail(WavError::Write, routine, {}, 1);
        return nullptr;
    }
    writer->chunk_ = writer->lateChunk_ = chunk;
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
    encoding_ = WavEncoding::Find(layout_.GetRawFormat());
    if (encoding_ == nullptr)
        return Fail(WavError::NotWritable, routine,
                    "Only files of whole numbers and floats in the usual byte order can be changed.");
    rate_ = layout_.GetSampleRate();
    frames_ = layout_.GetDataBytes() / layout_.GetFrameBytes();
    return true;
}

template <class T>
bool WavWriter::ReadFrames(std::int64_t first, std::int64_t count, T* values, const char* routine)
{
    const std::int64_t wanted = std::clamp<std::int64_t>(frames_ - first, 0, count);
    const std::int64_t samples = wanted * GetNumChannels();
    const std::int64_t size = wanted * layout_.GetFrameBytes();
    void* target = values;
    if (!IsPlain<T>()) {
        bytes_.resize(static_cast<std::size_t>(size));
        target = bytes_.data();
    }
    if (wanted > 0 && !io_.Read(Offset(first), size, target, nullptr))
        return Fail(WavError::Read, routine, {}, 1);
    if (!IsPlain<T>())
        encoding_->Decode(bytes_.data(), samples, values);
    std::fill(values + samples, values + count * GetNumChannels(), T{});
    return true;
}

bool WavWriter::Read(std::int64_t first, std::int64_t count, float* values, const char* routine)
{
    return ReadFrames(first, count, values, routine);
}

bool WavWriter::Read(std::int64_t first, std::int64_t count, double* values, const char* routine)
{
    return ReadFrames(first, count, values, routine);
}

template <class T>
bool WavWriter::WriteFrames(std::int64_t first, std::int64_t count, const T* values, const char* routine)
{
    if (!CheckNumFrames(first + count, routine))
        return false;
    headerIsOld_ = true;
    const std::int64_t size = count * layout_.GetFrameBytes();
    const void* source = values;
    if (!IsPlain<T>()) {
        bytes_.resize(static_cast<std::size_t>(size));
        encoding_->Encode(values, count * GetNumChannels(), bytes_.data());
        source = bytes_.data();
    }
    if (!layout_.DropPeaks(io_) || !FillGap(first) || !io_.Write(Offset(first), size, source))
        return Fail(WavError::Write, routine, {}, 1);
    frames_ = std::max(frames_, first + count);
    return true;
}

bool WavWriter::Write(std::int64_t first, std::int64_t count, const float* values, const char* routine)
{
    return WriteFrames(first, count, values, routine);
}

bool WavWriter::Write(std::int64_t first, std::int64_t count, const double* values, const char* routine)
{
    return WriteFrames(first, count, values, routine);
}

/// Lengthens the file up to a frame with silence. The system does so itself where that consists of zeros.
bool WavWriter::FillGap(std::int64_t end)
{
    constexpr std::size_t blockSize = 65536;
    const std::int64_t until = Offset(end);
    if (encoding_->GetZero() == 0)
        return true;
    const std::vector<unsigned char> silence(blockSize, encoding_->GetZero());
    for (std::int64_t at = Offset(frames_); at < until; at += blockSize)
        if (!io_.Write(at, std::min<std::int64_t>(blockSize, until - at), silence.data()))
            return false;
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
    const unsigned char zero = encoding_->GetZero();
    if (frames <= frames_)
        return true;
    if (!CheckNumFrames(frames, routine))
        return false;
    headerIsOld_ = true;
    if (!FillGap(frames) || !io_.Write(Offset(frames) - 1, 1, &zero))
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

/// Puts texts that came late behind the data, in the place of those in the header.
bool WavWriter::AppendTexts(const char* routine)
{
    if (lateChunk_ == chunk_)
        return true;
    const std::int64_t end = io_.GetFileSize();
    const std::string chunk = std::string(static_cast<std::size_t>(end % 2), '\0') + lateChunk_;
    const auto size = static_cast<std::int64_t>(chunk.size());
    chunk_ = lateChunk_;
    if (layout_.GetType()->subId == WavFormat::Wav && end + size > VVMaxRiffBytes)
        return Fail(WavError::Write, routine, "A WAV file holds at most 4 GiB; its texts find no room.");
    return (layout_.DropTexts(io_) && io_.Write(end, size, chunk.data()) && layout_.WriteHeader(io_, frames_, rate_)) ||
           Fail(WavError::Write, routine, {}, 1);
}

bool WavWriter::Close(const char* routine)
{
    const bool flushed = Flush(routine) && AppendTexts(routine);
    if (!io_.Close())
        return Fail(WavError::Close, routine, {}, 1);
    return flushed;
}
