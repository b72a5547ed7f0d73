#pragma once

#include "FamosRecords.h"

#include "vdbase/VDIo.h"

#include <array>
#include <cstring>

/// Reads the bus frames of a time-stamped Famos recording one after the other. All values are little-endian.
///
/// The samples are runs of 512-byte blocks:
///
///     0  2    when not 0, the number of bytes at the end of the block before this one that are not used
///     2  2    offset in this block of the first record that starts in it, 4 to 512; a block with another value is passed
///     over 4  508  bytes of records, which run on from block to block
///
/// A record takes its length rounded up to a multiple of 4:
///
///     0   2       length L of the record with this header, 13 to 512, in the low 14 bits
///     2   6       time stamp
///     8   4       frame id
///     12  L - 12  data of the frame
class VDFamosFrameStream
{
public:
    static constexpr int HeaderSize = 12;

    /// All three must outlive the object.
    VDFamosFrameStream(VDIo& file, const std::vector<VDFamosDataBlock>& dataBlocks, VDCanFrameTypeList& frameTypes);

    /// Goes back to the first frame and sets the read counts of the frame types to 0.
    void ResetRead();

    /// Reads the next frame.
    /// @param scanOnly   false also counts it in the frame types, by the value of the frame's multiplex switch too
    /// @param endOfData  set when there is no further whole frame; nothing was read then
    /// @return false, recorded, when the stream is damaged or can't be read
    bool ReadFrame(bool scanOnly, bool* endOfData);

    /// Of the frame that was read last.
    int GetRecordLength() const { return recordLength_; }
    int GetNumBytes() const { return recordLength_ - HeaderSize; }
    unsigned long GetFrameId() const { return frameId_; }
    std::int64_t GetTimeStamp() const;
    /// Valid until the next read.
    const unsigned char* GetData() const { return record_.data() + HeaderSize; }

private:
    static constexpr int BlockSize = 512;
    static constexpr int MaxRecord = 512;
    // Copies of short records are of this fixed size, which both buffers have to spare.
    static constexpr int ShortRecord = 32;

    static unsigned Word(const unsigned char* bytes) { return bytes[0] | static_cast<unsigned>(bytes[1]) << 8; }
    bool ReadBytes(int count, unsigned char* target, bool* endOfData);
    bool ReadBlock(bool* endOfData);
    bool TakeLength(const unsigned char* word);
    bool CountRead();

    VDIo& file_;
    const std::vector<VDFamosDataBlock>& dataBlocks_;
    VDCanFrameTypeList& frameTypes_;
    std::size_t blockIndex_ = 0;
    std::int64_t offset_ = 0;
    int validEnd_ = 0;
    int position_ = 0;
    bool isFirstBlock_ = true;
    int recordLength_ = 0;
    unsigned long frameId_ = 0;
    std::array<unsigned char, BlockSize + ShortRecord> block_{};
    std::array<unsigned char, MaxRecord + ShortRecord> record_{};
};

/// Reports that the data of a frame are shorter than the database says (-332806). Always false.
bool VFReportShortFrame(unsigned long frameId, int definedBytes, int numBytes, const char* routine);
