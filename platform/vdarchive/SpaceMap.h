#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

/// Which parts of a storage file are in use, for its one writer. The map is not stored: it follows from what a commit refers
/// to, so that it can't contradict it. All places and sizes are multiples of `Unit` bytes.
class SpaceMap
{
public:
    static constexpr std::int64_t Unit = 64;
    static std::int64_t RoundUp(std::int64_t size, std::int64_t unit = Unit) { return (size + unit - 1) / unit * unit; }

    explicit SpaceMap(std::int64_t first) : end_(first) {}

    /// Where everything that is in use ends.
    std::int64_t GetEnd() const { return end_; }

    /// Takes a part, from where something was freed if it fits there, else from the end.
    /// @param alignment  a multiple of `Unit`
    std::int64_t Allocate(std::int64_t size, std::int64_t alignment);
    /// Takes a part of the wanted size. Where nothing freed is that large, but something at least as large as the least one,
    /// it takes as many of these as fit there, so that room is used before the file grows.
    /// @param size  gets what was taken
    std::int64_t AllocateUpTo(std::int64_t least, std::int64_t leastAlignment, std::int64_t wanted, std::int64_t alignment,
                              std::int64_t* size);
    /// Gives a part back at once: no commit ever referred to it.
    void Free(std::int64_t offset, std::int64_t size);
    /// Gives a part back that the last commit doesn't refer to, but perhaps an older one that somebody reads.
    void FreeLater(std::int64_t offset, std::int64_t size) { parked_.emplace_back(offset, size); }
    /// Nobody reads an older commit: what was freed later may be used.
    void Reuse();

    /// Starts from a commit: everything before `end` is free until `Use` takes it.
    void StartWith(std::int64_t end);
    /// @return false if the part isn't wholly free
    bool Use(std::int64_t offset, std::int64_t size);
    /// Turns all that is free into freed later.
    void FreeAllLater();
    /// Calls with place and size of each free part, which lie before the end.
    template <class Call>
    void VisitFree(Call call) const
    {
        for (const auto& [offset, size] : free_)
            call(offset, size);
    }

private:
    using Extents = std::map<std::int64_t, std::int64_t>;

    Extents::iterator FindFree(std::int64_t size, std::int64_t alignment);
    void Insert(std::int64_t offset, std::int64_t size);
    void Erase(Extents::iterator extent);

    std::int64_t end_;
    Extents free_;                                           // size by offset; no two touch, none touches the end
    std::set<std::pair<std::int64_t, std::int64_t>> sizes_;  // the same as (size, offset)
    std::vector<std::pair<std::int64_t, std::int64_t>> parked_;
};
