#pragma once

#include "daxlib/VDCanChanDefinition.h"

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

/// How often the values of a frame's multiplex switch were met, one element a value.
struct VDCanSwitchCounts
{
    VDArray<std::int64_t> totals{10};  ///< sized by whoever sets up multiplexing
    VDArray<std::int64_t> counts{10};  ///< frames read since the last reset
};

/// What a recording holds of one frame id. A damaged one may hold very many, so that the counts stand apart.
struct VDCanFrameType
{
    unsigned long frameId = 0;
    int numBytes = 0;                             ///< data length where the id was first seen
    std::int64_t count = 1;                       ///< frames seen in the scan
    std::int64_t readCount = 0;                   ///< frames read since the last reset
    VDCanChanDefinition* switchChan = nullptr;    ///< multiplex switch of the frame; not owned
    std::unique_ptr<VDCanSwitchCounts> switches;  ///< null until somebody sets up multiplexing
};

/// The frame ids met in a recording, each with its record. A frame whose id is known costs no allocation.
///
/// Two preferences, read by the constructor, choose the way of looking up. `/FileFormats/<format>/FastFrameIdLookup`
/// (default false) takes a table with one `int` per possible id, and keeps the records in the order of first appearance;
/// `/FileFormats/<format>/FrameIdLimitForFastLookup` (default 10000) is the largest id that it takes. Without it the records
/// are kept sorted by id, and ids have no limit.
class VDCanFrameTypeList
{
public:
    explicit VDCanFrameTypeList(const char* format);
    virtual ~VDCanFrameTypeList();
    VDCanFrameTypeList(const VDCanFrameTypeList&) = delete;
    VDCanFrameTypeList& operator=(const VDCanFrameTypeList&) = delete;

    /// Counts a frame. False, recorded (-334410), for an id above the limit of the fast lookup. Ids count with their low
    /// 32 bits.
    bool AddFrame(unsigned long frameId, int numBytes)
    {
        if (VDCanFrameType* known = Find(static_cast<int>(frameId)); known != nullptr) [[likely]] {
            ++known->count;
            return true;
        }
        return AddNewFrame(static_cast<std::uint32_t>(frameId), numBytes);
    }

    /// The record of an id; null if it wasn't met.
    VDCanFrameType* Find(int frameId) const
    {
        const auto id = static_cast<std::uint32_t>(frameId);
        if (fastLookup_ != 0) {
            if (id >= index_.size() || index_[id] < 0)
                return nullptr;
            return frames_[static_cast<std::size_t>(index_[id])];
        }
        Recent& recent = recent_[id % recent_.size()];
        if (recent.frame == nullptr || recent.id != id)
            recent = {id, FindSorted(id)};
        return recent.frame;
    }

    void ClearFrames();
    /// Sets what was counted while reading back to 0.
    void ResetCounts();

    int GetCount() const { return static_cast<int>(frames_.size() + late_.size()); }
    /// A record, which stays the list's and lives until `ClearFrames`; null for a position out of range.
    VDCanFrameType* GetFrameType(int position);

private:
    bool AddNewFrame(std::uint32_t id, int numBytes);
    void AddSorted(std::uint32_t id, VDCanFrameType* frame);
    void AddIndexed(std::uint32_t id, VDCanFrameType* frame);
    void MergeLate();

    VDCanFrameType* FindSorted(std::uint32_t id) const;
    // Position of the first id that isn't below the given one. Written so that no branch depends on the data.
    std::size_t LowerBound(std::uint32_t id) const
    {
        const std::uint32_t* base = ids_.data();
        for (std::size_t rest = ids_.size(); rest > 0;) {
            const std::size_t half = (rest + 1) / 2;
            base += base[half - 1] < id ? half : 0;
            rest -= half;
        }
        return static_cast<std::size_t>(base - ids_.data());
    }

    struct Recent
    {
        std::uint32_t id = 0;
        VDCanFrameType* frame = nullptr;
    };

    std::deque<VDCanFrameType> records_;  ///< in order of appearance
    std::vector<VDCanFrameType*> frames_;
    std::vector<std::uint32_t> ids_;  ///< sorted mode: the ids of `frames_` side by side
    /// Sorted mode: records of a list that has grown long, which are merged in many at a time. A recording of millions of
    /// ids (no real one has them) would otherwise move the whole list for each.
    std::map<std::uint32_t, VDCanFrameType*> late_;
    std::vector<int> index_;  ///< fast mode: position of an id in `frames_`, or -1
    /// Sorted mode: what was found last for ids of the same remainder, so that most frames need no search.
    mutable std::array<Recent, 256> recent_{};
    char fastLookup_;
    std::int64_t frameIdLimit_;
};
