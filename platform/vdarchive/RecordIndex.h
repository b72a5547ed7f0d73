#pragma once

#include "BlockFile.h"
#include "MetaBatch.h"
#include "vdarchive/Z4Bytes.h"

#include <functional>
#include <vector>

/// Where the records of one stream lie. Records are grouped in blocks of a fixed number; a block lists extents, runs of
/// records that lie one behind the other, and the checksum of each record. A reader takes a block from the file when it
/// first needs it and keeps its extents alone. Finding a record of an evenly written stream costs the same however long it
/// is.
class RecordIndex
{
public:
    /// Records of a stream that lie together, or are missing together.
    struct Run
    {
        std::int64_t count = 0;
        std::int64_t offset = 0;
        bool isPresent = false;
        bool isFresh = false;  ///< placed since the last commit, so that it may be written over
    };
    /// What another placing or a cut took out.
    struct Piece
    {
        std::int64_t record;
        Run run;
    };
    using Pieces = std::vector<Piece>;
    /// Works out the checksum of a record.
    using SumOf = std::function<bool(std::int64_t record, std::int64_t offset, std::uint64_t* sum)>;

    RecordIndex(BlockFile& file, std::int64_t recordSize, std::uint32_t blockRecords)
        : file_(file), recordSize_(recordSize), blockRecords_(blockRecords)
    {
    }

    /// Bytes that records of a stream of some length take; its last record takes only what is in it.
    std::int64_t GetBytes(std::int64_t record, std::int64_t count, std::int64_t length) const;

    /// The run that a record begins or stands in; its count and offset are from that record on. Runs end with their block.
    bool Find(std::int64_t record, Run* run);
    /// Places records anew, wherever they were. Their checksums are unknown then.
    bool Place(std::int64_t record, std::int64_t count, std::int64_t offset, Pieces* replaced);
    /// Takes out the records from this one on.
    bool Cut(std::int64_t record, Pieces* removed);
    /// For a record that is present and was found or placed in this block since the index was read.
    bool SetSum(std::int64_t record, std::uint64_t sum);
    bool ForgetSum(std::int64_t record);

    /// Reads the table of blocks of a stream of this length, the blocks themselves later.
    bool ReadTable(Z4ByteReader& reader, std::int64_t length);
    /// Writes blocks that have changed, and the table.
    bool Save(MetaBatch& batch, Z4ByteWriter& table, const SumOf& sumOf);
    /// What was saved is committed; `length` is the stream's.
    void Settle(std::int64_t length);

    /// Calls for each run of records; ends with false when a call gives false.
    /// @param sums  the checksums of the run's records if they are at hand
    using Visitor = std::function<bool(std::int64_t record, const Run& run, const std::uint64_t* sums)>;
    enum class Depth {
        Loaded,    ///< blocks that are in memory, which are all that can have fresh records
        All,       ///< all blocks
        WithSums,  ///< all blocks, with the checksums, which a reader has no other use for
    };
    bool Visit(Depth depth, const Visitor& visitor);
    /// The places of all blocks.
    template <class Call>
    bool VisitBlocks(Call call) const
    {
        for (const Block& block : blocks_)
            if (block.ref.size > 0 && !call(block.ref))
                return false;
        return true;
    }
    /// Blocks of the last commit that a cut took out, for whoever removes the whole stream.
    const std::vector<BlobRef>& GetDropped() const { return dropped_; }

private:
    struct Extent
    {
        std::uint32_t first;  // record in the block
        std::uint32_t count;
        std::int64_t offset;
        bool isFresh;
    };
    struct Block
    {
        std::uint32_t number = 0;
        std::uint32_t hint = 0;
        bool isLoaded = true;
        bool isDirty = false;
        BlobRef ref;    // as committed
        BlobRef saved;  // as written for the next commit
        std::vector<Extent> extents;
        std::vector<std::uint64_t> sums;  // by record in the block
        std::vector<bool> known;          // which sums are right
    };

    std::int64_t FirstRecord(const Block& block) const { return std::int64_t(block.number) * blockRecords_; }
    Block* FindBlock(std::uint32_t number);
    Block& AdoptBlock(std::uint32_t number);
    bool Load(Block& block, bool withSums);
    bool Decode(Block& block, const std::string& bytes, bool withSums) const;
    void CutBlock(Block& block, std::uint32_t first, std::uint32_t count, Pieces* removed);
    void Insert(Block& block, const Extent& extent) const;
    static std::size_t FindExtent(const Block& block, std::uint32_t record);
    bool SaveBlock(Block& block, MetaBatch& batch, const SumOf& sumOf);

    BlockFile& file_;
    std::int64_t recordSize_;
    std::uint32_t blockRecords_;
    std::int64_t committedLength_ = 0;
    std::vector<Block> blocks_;     // by number; blocks without records are missing
    std::vector<BlobRef> dropped_;  // of blocks that were committed and are gone
};
