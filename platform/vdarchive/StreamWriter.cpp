#include "StreamWriter.h"

#include <algorithm>
#include <bit>

namespace {

// Records begin where pages do, so that no page is copied in two goes; long runs where the large pages do in which the
// system caches what is written in large pieces.
constexpr std::int64_t Page = 4096;
constexpr std::int64_t LargePage = 64 * 1024;
// The longest run that is set aside; long enough that a disk's seek between two doesn't count.
constexpr std::int64_t LongestRun = 4 * 1024 * 1024;
// What is set aside beyond need is at most this part of what was placed since the last commit.
constexpr std::int64_t RunPart = 4;
// Checksums are worked out piece by piece while the data are still in the processor's cache.
constexpr std::int64_t PieceSize = 512 * 1024;

/// The next one, or the number itself.
std::int64_t PowerOfTwo(std::int64_t number)
{
    return static_cast<std::int64_t>(std::bit_ceil(static_cast<std::uint64_t>(number)));
}

}  // namespace

std::int64_t StreamWriter::GetUsed(std::int64_t record, std::int64_t length) const
{
    return std::clamp<std::int64_t>(length - record * recordSize_, 0, recordSize_);
}

StreamWriter::Room StreamWriter::TakeRoom(std::int64_t records)
{
    if (room_.records == 0) {
        // Neither what is rewritten again and again nor gaps make a stream grow.
        const std::int64_t grown = std::min(placed_ * recordSize_, length_);
        const std::int64_t ahead = std::min(grown / RunPart, LongestRun) / LargePage * LargePage;
        const std::int64_t wanted = std::max(records * recordSize_, ahead / recordSize_ * recordSize_);
        std::int64_t size = 0;
        room_.offset = file_.Space().AllocateUpTo(recordSize_, Page, wanted, wanted < LargePage ? Page : LargePage, &size);
        room_.records = size / recordSize_;
    }
    const Room taken = {room_.offset, std::min(records, room_.records)};
    room_.offset += taken.records * recordSize_;
    room_.records -= taken.records;
    placed_ += taken.records;
    return taken;
}

void StreamWriter::ReleaseRoom()
{
    file_.Space().Free(room_.offset, room_.records * recordSize_);
    room_ = {};
}

/// What is behind the bytes that commits refer to is free at once.
void StreamWriter::FreeTailRest(std::int64_t offset)
{
    const std::int64_t used = SpaceMap::RoundUp(tail_.used);
    file_.Space().Free(offset + used, tail_.room - used);
}

void StreamWriter::GiveBack(const RecordIndex::Pieces& pieces)
{
    for (const auto& [record, run] : pieces) {
        if (!run.isFresh) {
            BlobRef part;
            part.offset = run.offset;
            part.size = index_.GetBytes(record, run.count, committedLength_);
            if (const std::int64_t before = tail_.record - record; before >= 0 && before < run.count) {
                // An earlier commit may refer to more of the last record than the last one.
                part.size = before * recordSize_ + SpaceMap::RoundUp(tail_.used);
                FreeTailRest(run.offset + before * recordSize_);
                tail_ = {};
            }
            superseded_.push_back(part);
        } else if (record == 0 && shortHead_ > 0) {
            file_.Space().Free(run.offset, shortHead_);
            shortHead_ = 0;
        } else {
            file_.Space().Free(run.offset, run.count * recordSize_);
        }
    }
}

/// Whether a part of a record lies in its room behind all that commits refer to.
bool StreamWriter::IsGrowing(std::int64_t record, std::int64_t from, std::int64_t to) const
{
    return record == tail_.record && from >= tail_.used && to <= tail_.room;
}

bool StreamWriter::PlaceRecords(std::int64_t record, const Room& room)
{
    RecordIndex::Pieces replaced;
    if (!index_.Place(record, room.records, room.offset, &replaced))
        return false;
    GiveBack(replaced);
    return true;
}

bool StreamWriter::PreparePartial(std::int64_t record, std::int64_t position, std::int64_t end)
{
    const std::int64_t start = record * recordSize_;
    const std::int64_t from = std::max(position - start, std::int64_t(0));
    const std::int64_t to = std::min(end - start, recordSize_);
    const std::int64_t used = GetUsed(record, length_);
    RecordIndex::Run run;
    if (!index_.Find(record, &run))
        return false;
    const bool isShort = record == 0 && shortHead_ > 0;
    if (run.isPresent && run.isFresh && (!isShort || to <= shortHead_))
        return true;
    if (run.isPresent && IsGrowing(record, from, to))
        return true;

    // A stream with little in it takes no whole record: a file may have thousands of them. One that grows from commit to
    // commit does, or each commit would leave a smaller piece behind that nothing else fits.
    const bool isCommitted = run.isPresent && !run.isFresh;
    const std::int64_t headSize = isCommitted ? recordSize_ : PowerOfTwo(std::max({end, used, Page}));
    const bool isHead = record == 0 && headSize < recordSize_ && length_ <= recordSize_;
    const std::int64_t size = isHead ? headSize : recordSize_;
    const Room room = isHead ? Room{file_.Space().Allocate(size, Page), 1} : TakeRoom(1);
    if (from > 0 || to < used) {
        auto& scratch = file_.Scratch();
        scratch.assign(static_cast<std::size_t>(used), 0);
        const bool copied = (!run.isPresent || file_.Read(run.offset, used, scratch.data())) &&
                            file_.Write(room.offset, used, scratch.data());
        if (!copied) {
            file_.Space().Free(room.offset, size);
            return false;
        }
    }
    if (!PlaceRecords(record, room)) {
        file_.Space().Free(room.offset, size);
        return false;
    }
    if (record == 0)
        shortHead_ = isHead ? size : 0;
    return true;
}

bool StreamWriter::PrepareWhole(std::int64_t first, std::int64_t last)
{
    while (first <= last) {
        RecordIndex::Run run;
        if (!index_.Find(first, &run))
            return false;
        const bool isShort = first == 0 && shortHead_ > 0;
        std::int64_t count = std::min(run.count, last - first + 1);
        if (run.isPresent && run.isFresh && !isShort) {
            first += count;
            continue;
        }
        while (count > 0) {
            const Room room = TakeRoom(count);
            if (!PlaceRecords(first, room)) {
                file_.Space().Free(room.offset, room.records * recordSize_);
                return false;
            }
            first += room.records;
            count -= room.records;
        }
    }
    return true;
}

bool StreamWriter::Prepare(std::int64_t position, std::int64_t end)
{
    std::int64_t first = position / recordSize_;
    std::int64_t last = (end - 1) / recordSize_;
    if (position % recordSize_ != 0 || end < (first + 1) * recordSize_) {
        if (!PreparePartial(first, position, end))
            return false;
        ++first;
    }
    if (last >= first && end % recordSize_ != 0) {
        // Only what lies behind the data in its record can be in the way here.
        if (first < last && !PrepareWhole(first, last - 1))
            return false;
        return PreparePartial(last, position, end);
    }
    return PrepareWhole(first, last);
}

bool StreamWriter::AddToTailSum(std::int64_t record, std::int64_t inRecord, std::int64_t count, const unsigned char* buffer)
{
    if (inRecord == 0) {
        if (tailSum_ == nullptr)
            tailSum_ = std::make_unique<VDChecksum>();
        tailSum_->Clear();
        tailRecord_ = record;
        tailBytes_ = 0;
    } else if (record != tailRecord_ || inRecord != tailBytes_) {
        tailRecord_ = record == tailRecord_ ? -1 : tailRecord_;
        return index_.ForgetSum(record);
    }
    tailSum_->Add(buffer, count);
    tailBytes_ += count;
    return tailBytes_ < recordSize_ ? index_.ForgetSum(record) : index_.SetSum(record, tailSum_->Get());
}

bool StreamWriter::PutSums(std::int64_t position, std::int64_t count, const unsigned char* buffer)
{
    while (count > 0) {
        const std::int64_t record = position / recordSize_;
        const std::int64_t inRecord = position % recordSize_;
        const std::int64_t part = std::min(count, recordSize_ - inRecord);
        if (part < recordSize_ ? !AddToTailSum(record, inRecord, part, buffer)
                               : !index_.SetSum(record, VFChecksum(buffer, part)))
            return false;
        if (part == recordSize_ && record == tailRecord_)
            tailRecord_ = -1;
        position += part;
        buffer += part;
        count -= part;
    }
    return true;
}

bool StreamWriter::WriteRun(std::int64_t position, std::int64_t count, const unsigned char* buffer, std::int64_t offset)
{
    while (count > 0) {
        const std::int64_t part = std::min(count, PieceSize);
        if (!file_.Write(offset, part, buffer) || !PutSums(position, part, buffer))
            return false;
        position += part;
        offset += part;
        buffer += part;
        count -= part;
    }
    return true;
}

bool StreamWriter::Write(std::int64_t position, std::int64_t count, const unsigned char* buffer)
{
    const std::int64_t oldLength = length_;
    isChanged_ = true;
    if (position > length_ && !SetLength(position))
        return false;
    const std::int64_t end = position + count;
    bool good = Prepare(position, end);
    for (std::int64_t at = position; good && at < end;) {
        RecordIndex::Run run;
        good = index_.Find(at / recordSize_, &run);
        const std::int64_t inRecord = at % recordSize_;
        const std::int64_t part = std::min(end - at, run.count * recordSize_ - inRecord);
        good = good && WriteRun(at, part, buffer + (at - position), run.offset + inRecord);
        at += part;
    }
    if (good) {
        length_ = std::max(length_, end);
        return true;
    }
    // What lies behind the end has no meaning, but what was to be overwritten may be half old and half new by now.
    if (position < oldLength)
        file_.Break();
    length_ = oldLength;
    tailRecord_ = -1;
    if (oldLength % recordSize_ != 0)
        index_.ForgetSum(oldLength / recordSize_);
    return false;
}

bool StreamWriter::CutBehind(std::int64_t length)
{
    RecordIndex::Pieces behind;
    const bool good = index_.Cut((length + recordSize_ - 1) / recordSize_, &behind);
    GiveBack(behind);
    return good;
}

bool StreamWriter::SetLength(std::int64_t length)
{
    // A write that failed may have left records behind the end, too.
    isChanged_ = true;
    RecordIndex::Run run;
    if (!CutBehind(std::min(length, length_)))
        return false;
    const std::int64_t tail = std::min(length, length_) / recordSize_;
    if (!index_.Find(tail, &run))
        return false;
    if (length > length_ && length_ % recordSize_ != 0 && run.isPresent) {
        // Behind the end there may be anything.
        const std::int64_t zeros = std::min(length, (tail + 1) * recordSize_) - length_;
        const std::vector<unsigned char> buffer(static_cast<std::size_t>(zeros), 0);
        if (!Write(length_, zeros, buffer.data()))
            return false;
    } else if (length < length_ && length % recordSize_ != 0 && run.isPresent) {
        tailRecord_ = -1;
        if (!index_.ForgetSum(tail))
            return false;
    }
    length_ = length;
    return true;
}

bool StreamWriter::Tidy()
{
    ReleaseRoom();
    return CutBehind(length_);
}

bool StreamWriter::SumOf(std::int64_t record, std::int64_t offset, std::uint64_t* sum)
{
    const std::int64_t used = GetUsed(record, length_);
    if (record == tailRecord_ && used == tailBytes_) {
        *sum = tailSum_->Get();
        return true;
    }
    auto& scratch = file_.Scratch();
    scratch.resize(static_cast<std::size_t>(used));
    if (!file_.Read(offset, used, scratch.data()))
        return false;
    *sum = VFChecksum(scratch.data(), used);
    return true;
}

void StreamWriter::Settle()
{
    RecordIndex::Run run;
    const std::int64_t record = length_ / recordSize_;
    const std::int64_t used = length_ % recordSize_;
    if (used != 0 && index_.Find(record, &run) && run.isPresent && run.isFresh)
        tail_ = {record, used, record == 0 && shortHead_ > 0 ? shortHead_ : recordSize_};
    else if (tail_.record == record)
        tail_.used = std::max(tail_.used, used);
    else
        tail_ = {};
    for (const BlobRef& part : superseded_)
        file_.Space().FreeLater(part.offset, part.size);
    superseded_.clear();
    index_.Settle(length_);
    committedLength_ = length_;
    placed_ = 0;
    shortHead_ = 0;
    isChanged_ = false;
}

void StreamWriter::Drop()
{
    ReleaseRoom();
    index_.Visit(RecordIndex::Depth::Loaded, [this](std::int64_t record, const RecordIndex::Run& run, const std::uint64_t*) {
        if (run.isFresh)
            file_.Space().Free(run.offset, record == 0 && shortHead_ > 0 ? shortHead_ : run.count * recordSize_);
        else if (tail_.record >= record && tail_.record < record + run.count)
            FreeTailRest(run.offset + (tail_.record - record) * recordSize_);
        return true;
    });
    tail_ = {};
}
