#pragma once

#include "WavFormat.h"

#include "vdbase/VDIo.h"

#include <string>

/// Where things lie in a WAV, RF64 or W64 file: a walk over its chunks up to the data, with every size checked against the
/// file. libsndfile decodes the samples; the layout says what the header announces and what the file really holds, and
/// where the fields stand that change as a file is written.
class WavLayout
{
public:
    /// Reads the layout of an open file.
    /// @return false, recorded, if the header can't be used
    bool Read(VDIo& io, const char* routine);

    const WavFormat::Type* GetType() const { return type_; }
    int GetNumChannels() const { return channels_; }
    std::uint32_t GetSampleRate() const { return rate_; }
    /// Uncompressed samples, so that the number of frames follows from the number of bytes.
    bool IsUncompressed() const { return GetRawFormat() != 0; }
    /// How libsndfile names the encoding of uncompressed samples that have no header; 0 for any other encoding.
    int GetRawFormat() const;
    std::int64_t GetFrameBytes() const { return blockAlign_; }
    std::int64_t GetDataOffset() const { return dataOffset_; }
    /// Bytes of data that the file really holds.
    std::int64_t GetDataBytes() const { return dataBytes_; }
    /// Further chunks follow the data, so that the data can't grow in place.
    bool HasChunksBehindData() const { return chunksBehind_; }
    /// What the header says wrongly about the data, in words; empty if all is well.
    std::string GetDamage() const;

    /// Puts a whole chunk in front of the data of a file that has none yet, and reads the layout again.
    bool InsertChunk(VDIo& io, const std::string& chunk, const char* routine);
    /// Brings the sizes and the rate in the header up to date.
    /// @param frames  number of frames in the file; the data end the file unless their number is unchanged
    bool WriteHeader(VDIo& io, std::int64_t frames, std::uint32_t rate);
    /// Turns a chunk of peak values, which are no longer right, into one that readers pass over.
    bool DropPeaks(VDIo& io) { return DropChunk(io, peakId_); }
    /// The same with the texts in front of the data.
    bool DropTexts(VDIo& io) { return DropChunk(io, textsId_); }

private:
    struct Chunk
    {
        char id[4];
        std::int64_t body;       ///< offset of what is behind the chunk's header
        std::int64_t announced;  ///< bytes of the body as the header says
        std::int64_t next;       ///< offset of the next chunk
        std::int64_t sizeField;  ///< offset of the size
    };

    bool ReadContainer(VDIo& io);
    bool ReadChunk(VDIo& io, std::int64_t at, Chunk& chunk);
    bool ReadFormat(VDIo& io, const Chunk& chunk);
    bool ReadLongSizes(VDIo& io, const Chunk& chunk);
    void SetData(const Chunk& chunk);
    static bool DropChunk(VDIo& io, std::int64_t& id);
    bool Fail(const VDIo& io, const char* routine, int code, const std::string& detail) const;
    std::uint64_t Number(const unsigned char* bytes, int count) const;
    bool PutNumber(VDIo& io, std::int64_t at, std::uint64_t value, int count) const;

    const WavFormat::Type* type_ = nullptr;
    bool bigEndian_ = false;
    int formatTag_ = 0;
    int channels_ = 0;
    std::uint32_t rate_ = 0;
    int bits_ = 0;
    int blockAlign_ = 0;
    std::int64_t fileBytes_ = 0;
    bool sizeIsRight_ = false;      ///< the container announces the size that the file has
    std::int64_t formatBody_ = -1;  ///< offset of the format chunk's body; -1 while it wasn't met, as in the next five
    std::int64_t factBody_ = -1;
    std::int64_t peakId_ = -1;
    std::int64_t textsId_ = -1;
    std::int64_t longSizes_ = -1;  ///< offset of the body of the chunk of 64-bit sizes
    std::int64_t dataSizeField_ = -1;
    std::int64_t longDataBytes_ = -1;
    std::int64_t dataOffset_ = 0;
    std::int64_t announcedBytes_ = 0;
    std::int64_t dataBytes_ = 0;
    bool chunksBehind_ = false;
};
