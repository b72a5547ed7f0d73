#include "WavReader.h"

#include "WavReport.h"

#include "vdbase/VFTrace.h"

#include <algorithm>
#include <mutex>

namespace {

/// Opens a file. libsndfile keeps the reason of a failed opening in one place for the whole process, so that openings
/// take turns.
SNDFILE* OpenSndFile(const char* filename, int mode, SF_INFO& info, int failure, const char* routine)
{
    static std::mutex turn;
    const std::lock_guard guard(turn);
    SNDFILE* file = sf_open(filename, mode, &info);
    if (file == nullptr)
        WavReport(failure, routine, filename, sf_strerror(nullptr));
    return file;
}

}  // namespace

std::unique_ptr<WavReader> WavReader::Open(const char* filename, const char* routine)
{
    VDIo io(filename);
    if (io.Open(VTOpenRead))
        return Open(io, routine);
    WavReport(WavError::Open, routine, filename, {}, 1);
    return nullptr;
}

std::unique_ptr<WavReader> WavReader::Open(VDIo& io, const char* routine)
{
    std::unique_ptr<WavReader> reader(new WavReader);
    reader->filename_ = io.GetFilename().Str();
    WavLayout& layout = reader->layout_;
    if (!layout.Read(io, routine))
        return nullptr;
    reader->file_.reset(OpenSndFile(io.GetFilename(), SFM_READ, reader->info_, WavError::Header, routine));
    if (!reader->file_)
        return nullptr;
    for (std::size_t kind = 0; kind < WavTexts::Count; ++kind)
        if (const char* text = sf_get_string(reader->file_.get(), WavTexts::Kinds[kind].sndText))
            reader->texts_.Set(kind, text);
    reader->frames_ = std::max<std::int64_t>(reader->info_.frames, 0);
    if (layout.IsUncompressed() && !reader->SetFramesPresent(routine))
        return nullptr;
    if (!layout.GetDamage().empty())
        VFTracePrintf("%s: %s\n", reader->filename_.c_str(), layout.GetDamage().c_str());
    return reader;
}

/// Makes the number of frames the one that the file holds. Where libsndfile goes by a header that says less, as after a
/// recorder lost its power, the samples are read as a file without a header.
bool WavReader::SetFramesPresent(const char* routine)
{
    const std::int64_t present = layout_.GetDataBytes() / layout_.GetFrameBytes();
    if (frames_ < present) {
        SF_INFO raw{};
        raw.format = layout_.GetRawFormat();
        raw.channels = info_.channels;
        raw.samplerate = info_.samplerate;
        sf_count_t offset = layout_.GetDataOffset();
        file_.reset(OpenSndFile(filename_.c_str(), SFM_READ, raw, WavError::Header, routine));
        if (!file_)
            return false;
        sf_command(file_.get(), SFC_SET_RAW_START_OFFSET, &offset, sizeof offset);
    }
    frames_ = present;
    return true;
}

template <class T, class ReadFunction>
bool WavReader::ReadFrames(std::int64_t first, std::int64_t count, T* values, const char* routine, ReadFunction readFunction)
{
    const std::int64_t wanted = std::clamp<std::int64_t>(frames_ - first, 0, count);
    if (wanted > 0) {
        if (sf_seek(file_.get(), first, SEEK_SET) != first)
            return WavReport(WavError::Read, routine, filename_, sf_strerror(file_.get())) != 0;
        const std::int64_t got = readFunction(file_.get(), values, wanted);
        if (got != wanted)
            return WavReport(WavError::WrongNumber, routine, filename_,
                             "Wanted " + std::to_string(wanted) + " from point " + std::to_string(first + 1) + ", got " +
                                 std::to_string(got) + ".") != 0;
    }
    std::fill(values + wanted * info_.channels, values + count * info_.channels, T{});
    return true;
}

bool WavReader::Read(std::int64_t first, std::int64_t count, float* values, const char* routine)
{
    return ReadFrames(first, count, values, routine, sf_readf_float);
}

bool WavReader::Read(std::int64_t first, std::int64_t count, double* values, const char* routine)
{
    return ReadFrames(first, count, values, routine, sf_readf_double);
}

bool WavReader::Write(std::int64_t, std::int64_t, const float*, const char* routine)
{
    return FailToWrite(routine);
}

bool WavReader::Write(std::int64_t, std::int64_t, const double*, const char* routine)
{
    return FailToWrite(routine);
}

bool WavReader::FailToWrite(const char* routine) const
{
    return WavReport(WavError::NotWritable, routine, filename_, "The file is open for reading.") != 0;
}

bool WavReader::IsScaled() const
{
    const int encoding = info_.format & SF_FORMAT_SUBMASK;
    return encoding != SF_FORMAT_FLOAT && encoding != SF_FORMAT_DOUBLE;
}

bool WavReader::IsWide() const
{
    const int encoding = info_.format & SF_FORMAT_SUBMASK;
    return encoding == SF_FORMAT_DOUBLE || encoding == SF_FORMAT_PCM_32;
}

bool WavCreateFile(const char* filename, const WavFormat::Type& type, const WavEncoding& encoding, int channels,
                   const char* routine)
{
    SF_INFO info{};
    info.format = type.sndFormat | encoding.sndFormat;
    info.channels = channels;
    info.samplerate = 1;
    SNDFILE* file = OpenSndFile(filename, SFM_WRITE, info, WavError::Open, routine);
    if (file == nullptr)
        return false;
    const bool done = sf_error(file) == 0;
    if (sf_close(file) == 0 && done)
        return true;
    return WavReport(WavError::Write, routine, filename, "The header can't be written.") != 0;
}
