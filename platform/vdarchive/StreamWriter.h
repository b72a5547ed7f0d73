#pragma once

#include "RecordIndex.h"
#include "vdbase/VFChecksum.h"

#include <memory>
#include <vector>

/// The writing side of one stream. Records that the last commit refers to are placed anew before they change; new ones come
/// from runs set aside for this stream, so that streams written in turn still lie in long pieces. The last record goes on
/// where it is, behind the bytes that commits refer to, so that a stream that is flushed often isn't copied with every
/// flush.
class StreamWriter
{
public:
    /// @param length  of the stream in bytes; this object changes it
    StreamWriter(BlockFile& file, RecordIndex& index, std::int64_t recordSize, std::int64_t& length)
        : file_(file), index_(index), recordSize_(recordSize), length_(length), committedLength_(length)
    {
    }

    bool Write(std::int64_t position, std::int64_t count, const unsigned char* buffer);
    bool SetLength(std::int64_t length);

    /// Whether anything was called since the last commit that may have changed the stream.
    bool IsChanged() const { return isChanged_; }
    /// Before a save: gives back what was set aside and drops records behind the end.
    bool Tidy();
    /// Works out the checksum of a record that wasn't written in one go.
    bool SumOf(std::int64_t record, std::int64_t offset, std::uint64_t* sum);
    /// What was saved is committed.
    void Settle();
    /// Gives back all that no commit refers to. The stream can't be used any more.
    void Drop();
    /// Parts of the last commit that the stream no longer refers to.
    const std::vector<BlobRef>& GetSuperseded() const { return superseded_; }

private:
    /// Records that lie together and are fresh.
    struct Room
    {
        std::int64_t offset = 0;
        std::int64_t records = 0;
    };
    /// A last record that this object placed and a commit refers to: how much of it any commit does, and the room it has.
    struct Tail
    {
        std::int64_t record = -1;
        std::int64_t used = 0;  // in bytes, as the next
        std::int64_t room = 0;
    };

    /// Bytes of a record that have a meaning, if the stream has this length.
    std::int64_t GetUsed(std::int64_t record, std::int64_t length) const;
    bool Prepare(std::int64_t position, std::int64_t end);
    bool PreparePartial(std::int64_t record, std::int64_t position, std::int64_t end);
    bool PrepareWhole(std::int64_t first, std::int64_t last);
    bool IsGrowing(std::int64_t record, std::int64_t from, std::int64_t to) const;
    void FreeTailRest(std::int64_t offset);
    bool WriteRun(std::int64_t position, std::int64_t count, const unsigned char* buffer, std::int64_t offset);
    bool PutSums(std::int64_t position, std::int64_t count, const unsigned char* buffer);
    bool AddToTailSum(std::int64_t record, std::int64_t inRecord, std::int64_t count, const unsigned char* buffer);
    bool CutBehind(std::int64_t length);
    Room TakeRoom(std::int64_t records);
    bool PlaceRecords(std::int64_t record, const Room& room);
    void GiveBack(const RecordIndex::Pieces& pieces);
    void ReleaseRoom();

    BlockFile& file_;
    RecordIndex& index_;
    std::int64_t recordSize_;
    std::int64_t& length_;
    std::int64_t committedLength_;
    bool isChanged_ = false;
    Room room_;                   // set aside and not placed yet
    std::int64_t placed_ = 0;     // records placed since the last commit; decides how much to set aside
    std::int64_t shortHead_ = 0;  // room of record 0 while it is fresh, alone and small; else 0
    Tail tail_;
    std::vector<BlobRef> superseded_;
    std::unique_ptr<VDChecksum> tailSum_;  // of a record that is written in several goes
    std::int64_t tailRecord_ = -1;
    std::int64_t tailBytes_ = 0;
};
