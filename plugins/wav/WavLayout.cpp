#include "WavLayout.h"

#include "WavReport.h"

#include <sndfile.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr int VVTagPcm = 1;
constexpr int VVTagFloat = 3;
constexpr int VVTagALaw = 6;
constexpr int VVTagMuLaw = 7;
constexpr int VVTagExtensible = 0xfffe;
/// A header of more chunks than this is no header.
constexpr int VVMaxChunks = 4096;

// A chunk of a W64 file is named by a GUID that begins with the chunk's four letters and ends, but for the first two, like
// this.
constexpr unsigned char VVW64Riff[] = {'r',  'i',  'f',  'f',  0x2e, 0x91, 0xcf, 0x11,
                                       0xa5, 0xd6, 0x28, 0xdb, 0x04, 0xc1, 0x00, 0x00};
constexpr unsigned char VVW64Tail[] = {0xf3, 0xac, 0xd3, 0x11, 0x8c, 0xd1, 0x00, 0xc0, 0x4f, 0x8e, 0xdb, 0x8a};

bool IsTextAt(const unsigned char* bytes, const char (&text)[5])
{
    return std::memcmp(bytes, text, 4) == 0;
}

bool IsId(const char (&id)[4], const char (&text)[5])
{
    return std::memcmp(id, text, 4) == 0;
}

}  // namespace

const WavFormat::Type* WavFormat::Recognise(const unsigned char* header, std::int64_t size)
{
    if (size >= 12 && IsTextAt(header + 8, "WAVE")) {
        if (IsTextAt(header, "RIFF") || IsTextAt(header, "RIFX"))
            return Find(FileId, Wav);
        if (IsTextAt(header, "RF64"))
            return Find(FileId, Rf64);
    }
    const bool w64 = size >= 40 && std::memcmp(header, VVW64Riff, sizeof VVW64Riff) == 0 && IsTextAt(header + 24, "wave") &&
                     std::memcmp(header + 28, VVW64Tail, sizeof VVW64Tail) == 0;
    return w64 ? Find(FileId, W64) : nullptr;
}

bool WavLayout::Fail(const VDIo& io, const char* routine, int code, const std::string& detail) const
{
    return WavReport(code, routine, io.GetFilename().Str(), detail) != 0;
}

std::uint64_t WavLayout::Number(const unsigned char* bytes, int count) const
{
    std::uint64_t value = 0;
    for (int at = 0; at < count; ++at)
        value = value << 8 | bytes[bigEndian_ ? at : count - 1 - at];
    return value;
}

bool WavLayout::PutNumber(VDIo& io, std::int64_t at, std::uint64_t value, int count) const
{
    unsigned char bytes[8];
    for (int index = 0; index < count; ++index)
        bytes[index] = static_cast<unsigned char>(value >> (8 * (bigEndian_ ? count - 1 - index : index)));
    return io.Write(at, count, bytes);
}

bool WavLayout::ReadContainer(VDIo& io)
{
    unsigned char header[40] = {};
    std::int64_t size = 0;
    fileBytes_ = io.GetFileSize();
    if (fileBytes_ < 0 || !io.Read(0, sizeof header, header, &size))
        return false;
    type_ = WavFormat::Recognise(header, size);
    if (type_ == nullptr)
        return false;
    bigEndian_ = IsTextAt(header, "RIFX");
    const std::uint64_t announced = type_->subId == WavFormat::W64 ? Number(header + 16, 8) : Number(header + 4, 4) + 8;
    sizeIsRight_ = announced == static_cast<std::uint64_t>(fileBytes_);
    return true;
}

bool WavLayout::ReadChunk(VDIo& io, std::int64_t at, Chunk& chunk)
{
    const bool w64 = type_->subId == WavFormat::W64;
    const int headerBytes = w64 ? 24 : 8;
    unsigned char header[24];
    if (at > fileBytes_ - headerBytes || !io.Read(at, headerBytes, header, nullptr))
        return false;
    std::memcpy(chunk.id, header, 4);
    chunk.sizeField = at + headerBytes - (w64 ? 8 : 4);
    chunk.body = at + headerBytes;
    std::uint64_t size = w64 ? Number(header + 16, 8) : Number(header + 4, 4);
    if (w64)
        size = size < 24 ? 0 : size - 24;  // the size of a W64 chunk counts its header
    chunk.announced = static_cast<std::int64_t>(std::min<std::uint64_t>(size, std::numeric_limits<std::int64_t>::max()));
    const std::int64_t rest = fileBytes_ - chunk.body;
    const std::int64_t padding = w64 ? -chunk.announced & 7 : chunk.announced & 1;
    chunk.next = chunk.announced >= rest ? fileBytes_ : std::min(chunk.body + chunk.announced + padding, fileBytes_);
    return true;
}

bool WavLayout::ReadFormat(VDIo& io, const Chunk& chunk)
{
    unsigned char body[40] = {};
    const std::int64_t size = std::min<std::int64_t>({chunk.announced, fileBytes_ - chunk.body, sizeof body});
    if (size < 16 || !io.Read(chunk.body, size, body, nullptr))
        return false;
    formatBody_ = chunk.body;
    formatTag_ = static_cast<int>(Number(body, 2));
    channels_ = static_cast<int>(Number(body + 2, 2));
    rate_ = static_cast<std::uint32_t>(Number(body + 4, 4));
    blockAlign_ = static_cast<int>(Number(body + 12, 2));
    bits_ = static_cast<int>(Number(body + 14, 2));
    if (formatTag_ == VVTagExtensible && size >= 26)
        formatTag_ = static_cast<int>(Number(body + 24, 2));  // the sub-format's GUID begins with the tag
    return true;
}

bool WavLayout::ReadLongSizes(VDIo& io, const Chunk& chunk)
{
    unsigned char body[24];
    if (chunk.announced < 24 || fileBytes_ - chunk.body < 24 || !io.Read(chunk.body, sizeof body, body, nullptr))
        return false;
    longSizes_ = chunk.body;
    const std::uint64_t size = Number(body + 8, 8);
    longDataBytes_ = static_cast<std::int64_t>(std::min<std::uint64_t>(size, std::numeric_limits<std::int64_t>::max()));
    return true;
}

void WavLayout::SetData(const Chunk& chunk)
{
    dataSizeField_ = chunk.sizeField;
    dataOffset_ = chunk.body;
    const bool all32Bits = chunk.announced == 0xffffffff && type_->subId != WavFormat::W64;
    announcedBytes_ = all32Bits && longDataBytes_ >= 0 ? longDataBytes_ : chunk.announced;
    // A recorder that lost its power, or doesn't know how long it will run, has left a size of 0 or the largest there is:
    // what stands behind it are data.
    const std::int64_t rest = fileBytes_ - dataOffset_;
    const bool unknown = (announcedBytes_ == 0 && !sizeIsRight_) || (all32Bits && longDataBytes_ < 0);
    dataBytes_ = unknown || announcedBytes_ > rest ? rest : announcedBytes_;
    chunksBehind_ = dataBytes_ + 8 <= rest;
}

bool WavLayout::Read(VDIo& io, const char* routine)
{
    *this = {};
    if (!ReadContainer(io))
        return Fail(io, routine, WavError::Header, "The file doesn't begin like a WAV, RF64 or W64 file.");
    std::int64_t at = type_->subId == WavFormat::W64 ? 40 : 12;
    Chunk chunk;
    for (int number = 0; number < VVMaxChunks && ReadChunk(io, at, chunk); ++number, at = chunk.next) {
        if (IsId(chunk.id, "ds64") && type_->subId == WavFormat::Rf64) {
            if (!ReadLongSizes(io, chunk))
                return Fail(io, routine, WavError::Header, "The chunk of 64-bit sizes is cut off.");
        } else if (IsId(chunk.id, "fmt ")) {
            if (!ReadFormat(io, chunk))
                return Fail(io, routine, WavError::Header, "The format chunk is cut off.");
        } else if (IsId(chunk.id, "fact")) {
            factBody_ = chunk.body;
        } else if (IsId(chunk.id, "PEAK")) {
            peakId_ = at;
        } else if (IsId(chunk.id, "LIST")) {
            textsId_ = at;
        } else if (IsId(chunk.id, "data")) {
            if (formatBody_ < 0)
                return Fail(io, routine, WavError::Header, "The data come before the format.");
            if (channels_ == 0)
                return Fail(io, routine, WavError::Header, "The header says that there are 0 channels.");
            if (rate_ == 0)
                return Fail(io, routine, WavError::Header, "The header says that the sample rate is 0.");
            if (blockAlign_ == 0)
                return Fail(io, routine, WavError::Header, "The header says that a frame has 0 bytes.");
            SetData(chunk);
            return true;
        }
    }
    if (formatBody_ < 0)
        return Fail(io, routine, WavError::Header, "The header is cut off.");
    return Fail(io, routine, WavError::NoData, "The file ends before its data.");
}

int WavLayout::GetRawFormat() const
{
    static constexpr struct
    {
        int tag;
        int bits;
        int format;
    } encodings[] = {
        {VVTagPcm, 8, SF_FORMAT_PCM_U8},  {VVTagPcm, 16, SF_FORMAT_PCM_16},  {VVTagPcm, 24, SF_FORMAT_PCM_24},
        {VVTagPcm, 32, SF_FORMAT_PCM_32}, {VVTagFloat, 32, SF_FORMAT_FLOAT}, {VVTagFloat, 64, SF_FORMAT_DOUBLE},
        {VVTagALaw, 8, SF_FORMAT_ALAW},   {VVTagMuLaw, 8, SF_FORMAT_ULAW},
    };
    for (const auto& encoding : encodings)
        if (formatTag_ == encoding.tag && bits_ == encoding.bits && blockAlign_ == channels_ * bits_ / 8)
            return SF_FORMAT_RAW | encoding.format | (bigEndian_ ? SF_ENDIAN_BIG : SF_ENDIAN_LITTLE);
    return 0;
}

std::string WavLayout::GetDamage() const
{
    if (announcedBytes_ == dataBytes_)
        return {};
    return "The header announces " + std::to_string(announcedBytes_) + " bytes of data, the file holds " +
           std::to_string(dataBytes_) + ".";
}

bool WavLayout::InsertChunk(VDIo& io, const std::string& chunk, const char* routine)
{
    const std::int64_t at = dataSizeField_ - 4;
    std::string head(static_cast<std::size_t>(dataOffset_ - at), '\0');
    return io.Read(at, dataOffset_ - at, head.data(), nullptr) &&
           io.Write(at, static_cast<std::int64_t>(chunk.size() + head.size()), (chunk + head).data()) && Read(io, routine);
}

bool WavLayout::WriteHeader(VDIo& io, std::int64_t frames, std::uint32_t rate)
{
    const auto data = static_cast<std::uint64_t>(frames * blockAlign_);
    const auto file = static_cast<std::uint64_t>(io.GetFileSize());
    const auto count = static_cast<std::uint64_t>(frames);
    bool done = true;
    switch (type_->subId) {
    case WavFormat::Wav:
        done = PutNumber(io, 4, file - 8, 4) && PutNumber(io, dataSizeField_, data, 4) &&
               (factBody_ < 0 || PutNumber(io, factBody_, count, 4));
        break;
    case WavFormat::Rf64:
        done = longSizes_ >= 0 && PutNumber(io, longSizes_, file - 8, 8) && PutNumber(io, longSizes_ + 8, data, 8) &&
               PutNumber(io, longSizes_ + 16, count, 8) && PutNumber(io, dataSizeField_, 0xffffffff, 4);
        break;
    case WavFormat::W64:
        done = PutNumber(io, 16, file, 8) && PutNumber(io, dataSizeField_, data + 24, 8) &&
               (factBody_ < 0 || PutNumber(io, factBody_, count, 8));
        break;
    }
    rate_ = rate;
    announcedBytes_ = dataBytes_ = static_cast<std::int64_t>(data);
    // The bytes a second have 32 bits; readers go by the rate.
    const std::uint64_t byteRate =
        std::min<std::uint64_t>(std::uint64_t{rate} * static_cast<unsigned>(blockAlign_), 0xffffffff);
    return done && PutNumber(io, formatBody_ + 4, rate, 4) && PutNumber(io, formatBody_ + 8, byteRate, 4);
}

bool WavLayout::DropChunk(VDIo& io, std::int64_t& id)
{
    const std::int64_t at = std::exchange(id, -1);
    return at < 0 || io.Write(at, 4, "JUNK");
}
