#pragma once

#include "vdarchive/VDArchiveApi.h"

#include <cstdint>
#include <memory>

class BlockFile;
class RecordIndex;
class StreamWriter;

/// A row of bytes of any length in a storage file, kept in records of one size. What was never written reads as 0 and takes
/// no room. Neighbouring records go between the caller's buffer and the file in one call. A stream belongs to its node; one
/// thread uses it at a time. Failures are recorded.
class VDARCHIVE_API Z4Stream
{
public:
    /// In bytes.
    static constexpr std::int64_t LargestLength = std::int64_t(1) << 46;

    ~Z4Stream();
    Z4Stream(const Z4Stream&) = delete;
    Z4Stream& operator=(const Z4Stream&) = delete;

    std::int64_t GetLength() const { return length_; }
    int GetRecordSize() const { return recordSize_; }

    /// @return false, recorded, if a part of the range lies behind the end
    bool Read(std::int64_t position, std::int64_t count, void* buffer);
    /// Lengthens the stream if need be. A failed write leaves the length as it was; where it was to overwrite, nothing more
    /// of the file can be committed.
    bool Write(std::int64_t position, std::int64_t count, const void* buffer);
    /// Cuts or lengthens the stream.
    bool SetLength(std::int64_t length);

private:
    friend class StorageCheck;
    friend class Z4Node;

    Z4Stream(std::shared_ptr<BlockFile> file, int recordSize, std::uint32_t blockRecords);
    StreamWriter& Writer();

    std::shared_ptr<BlockFile> file_;
    std::unique_ptr<RecordIndex> index_;
    std::unique_ptr<StreamWriter> writer_;  // of a stream that was written to
    std::int64_t length_ = 0;
    int recordSize_;
};
