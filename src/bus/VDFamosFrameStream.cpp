#include "VDFamosFrameStream.h"

#include "frame/VFDaxReport.h"

#include <algorithm>

namespace {

constexpr int VVMinRecord = VDFamosFrameStream::HeaderSize + 1;
constexpr unsigned VVLengthMask = 0x3FFF;
constexpr int VVFirstRecordByte = 4;

constexpr int RoundUp(int length)
{
    return (length + 3) / 4 * 4;
}

bool ReportLength(int length, int largest)
{
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::FrameLength), length, largest);
    return VFDaxReport(DaxError::FrameLength, "VDFamosUtil::InitTimeStampRead", {.text = text}) != 0;
}

}  // namespace

bool VFReportShortFrame(unsigned long frameId, int definedBytes, int numBytes, const char* routine)
{
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::FamosShortFrame), static_cast<int>(frameId), definedBytes, numBytes);
    return VFDaxReport(DaxError::FamosShortFrame, routine, {.text = text}) != 0;
}

VDFamosFrameStream::VDFamosFrameStream(VDIo& file, const std::vector<VDFamosDataBlock>& dataBlocks,
                                       VDCanFrameTypeList& frameTypes)
    : file_(file), dataBlocks_(dataBlocks), frameTypes_(frameTypes)
{
}

void VDFamosFrameStream::ResetRead()
{
    blockIndex_ = 0;
    offset_ = 0;
    validEnd_ = 0;
    position_ = 0;
    recordLength_ = 0;
    isFirstBlock_ = true;
    frameTypes_.ResetCounts();
}

std::int64_t VDFamosFrameStream::GetTimeStamp() const
{
    const std::int64_t low = Word(&record_[2]);
    const std::int64_t middle = Word(&record_[4]);
    const std::int64_t high = Word(&record_[6]);
    return ((high << 16) + middle) * 65536 + low;
}

bool VDFamosFrameStream::ReadFrame(bool scanOnly, bool* endOfData)
{
    *endOfData = false;
    const int left = validEnd_ - position_;
    const unsigned char* const start = &block_[static_cast<std::size_t>(position_)];
    if (left >= VVMinRecord && RoundUp(static_cast<int>(Word(start) & VVLengthMask)) <= left) [[likely]] {
        // The whole record lies in the block.
        if (!TakeLength(start))
            return false;
        const int size = RoundUp(recordLength_);
        std::memcpy(record_.data(), start, static_cast<std::size_t>(ShortRecord));
        if (size > ShortRecord)
            std::memcpy(&record_[ShortRecord], start + ShortRecord, static_cast<std::size_t>(size - ShortRecord));
        position_ += size;
    } else {
        if (!ReadBytes(2, record_.data(), endOfData))
            return false;
        if (*endOfData)
            return true;
        if (!TakeLength(record_.data()))
            return false;
        if (!ReadBytes(RoundUp(recordLength_) - 2, &record_[2], endOfData))
            return false;
        if (*endOfData)
            return true;
    }
    record_[0] = static_cast<unsigned char>(recordLength_);
    record_[1] = static_cast<unsigned char>(recordLength_ >> 8);
    frameId_ = Word(&record_[8]) | static_cast<unsigned long>(Word(&record_[10])) << 16;
    return scanOnly || CountRead();
}

bool VDFamosFrameStream::TakeLength(const unsigned char* word)
{
    recordLength_ = static_cast<int>(Word(word) & VVLengthMask);
    if (recordLength_ < VVMinRecord || recordLength_ > MaxRecord)
        return ReportLength(recordLength_, MaxRecord);
    return true;
}

bool VDFamosFrameStream::CountRead()
{
    VDCanFrameType* const type = frameTypes_.Find(static_cast<int>(frameId_));
    if (type == nullptr)
        return true;
    ++type->readCount;
    if (type->switchChan == nullptr)
        return true;
    if (type->switchChan->GetFrameBytes() > GetNumBytes())
        return VFReportShortFrame(frameId_, type->switchChan->GetFrameBytes(), GetNumBytes(), "VDFamosUtil::ReadFrame");
    std::int64_t value = 0;
    if (!type->switchChan->GetValueFromFrame(GetData(), &value))
        return false;
    if (type->switches != nullptr && value >= 0 && value < type->switches->counts.GetSize())
        ++type->switches->counts[static_cast<int>(value)];
    return true;
}

bool VDFamosFrameStream::ReadBytes(int count, unsigned char* target, bool* endOfData)
{
    while (count > 0) {
        if (position_ >= validEnd_) {
            if (!ReadBlock(endOfData))
                return false;
            if (*endOfData)
                return true;
        }
        const int part = std::min(count, validEnd_ - position_);
        if (part <= 0)
            continue;
        std::memcpy(target, &block_[static_cast<std::size_t>(position_)], static_cast<std::size_t>(part));
        position_ += part;
        target += part;
        count -= part;
    }
    return true;
}

bool VDFamosFrameStream::ReadBlock(bool* endOfData)
{
    *endOfData = false;
    for (;;) {
        const VDFamosDataBlock* const run = blockIndex_ < dataBlocks_.size() ? &dataBlocks_[blockIndex_] : nullptr;
        if (run == nullptr || offset_ > run->end - run->start - BlockSize) {
            if (blockIndex_ + 1 >= dataBlocks_.size()) {
                *endOfData = true;
                return true;
            }
            ++blockIndex_;
            offset_ = 0;
            continue;
        }
        if (!file_.Read(run->start + offset_, BlockSize, block_.data(), nullptr))
            return false;
        offset_ += BlockSize;
        const unsigned unusedBefore = Word(&block_[0]);
        const int firstRecord = static_cast<int>(Word(&block_[2]));
        if (firstRecord < VVFirstRecordByte || firstRecord > BlockSize)
            continue;
        // Only the block after this one says how much of this one is used. A data block's last one is used whole: what
        // follows it belongs to the file's next key.
        unsigned char next[2] = {0, 0};
        const std::int64_t follows = run->start + offset_;
        if (follows + 2 <= run->end && !file_.Read(follows, sizeof next, next, nullptr))
            return false;
        position_ = unusedBefore != 0 || isFirstBlock_ ? firstRecord : VVFirstRecordByte;
        validEnd_ = BlockSize - static_cast<int>(Word(next));
        isFirstBlock_ = false;
        return true;
    }
}
