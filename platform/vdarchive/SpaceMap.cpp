#include "SpaceMap.h"

#include <algorithm>
#include <iterator>

namespace {

// A search for room must not take longer the more pieces there are.
constexpr int MostTries = 32;

}  // namespace

void SpaceMap::Insert(std::int64_t offset, std::int64_t size)
{
    free_.emplace(offset, size);
    sizes_.emplace(size, offset);
}

void SpaceMap::Erase(Extents::iterator extent)
{
    sizes_.erase({extent->second, extent->first});
    free_.erase(extent);
}

SpaceMap::Extents::iterator SpaceMap::FindFree(std::int64_t size, std::int64_t alignment)
{
    // The smallest parts may fit or not, depending on where they begin; a part of this size fits anywhere.
    const auto surely = sizes_.lower_bound({size + alignment - Unit, 0});
    int tries = MostTries;
    for (auto part = sizes_.lower_bound({size, 0}); part != surely && tries > 0; ++part, --tries)
        if (RoundUp(part->second, alignment) + size <= part->second + part->first)
            return free_.find(part->second);
    return surely == sizes_.end() ? free_.end() : free_.find(surely->second);
}

std::int64_t SpaceMap::Allocate(std::int64_t size, std::int64_t alignment)
{
    size = RoundUp(size);
    const auto fitting = FindFree(size, alignment);
    std::int64_t from = end_;
    std::int64_t to = RoundUp(end_, alignment) + size;
    if (fitting != free_.end()) {
        from = fitting->first;
        to = from + fitting->second;
        Erase(fitting);
    } else {
        end_ = to;
    }
    const std::int64_t offset = RoundUp(from, alignment);
    if (offset > from)
        Insert(from, offset - from);
    if (to > offset + size)
        Insert(offset + size, to - offset - size);
    return offset;
}

std::int64_t SpaceMap::AllocateUpTo(std::int64_t least, std::int64_t leastAlignment, std::int64_t wanted,
                                    std::int64_t alignment, std::int64_t* size)
{
    *size = wanted;
    if (wanted <= least || sizes_.empty() || FindFree(wanted, alignment) != free_.end())
        return Allocate(wanted, alignment);
    const auto [length, offset] = *sizes_.rbegin();
    const std::int64_t inside = length - (RoundUp(offset, leastAlignment) - offset);
    if (inside < least)
        return Allocate(wanted, alignment);
    *size = std::min(inside / least * least, wanted);
    return Allocate(*size, leastAlignment);
}

void SpaceMap::Free(std::int64_t offset, std::int64_t size)
{
    size = RoundUp(size);
    if (size <= 0)
        return;
    auto next = free_.lower_bound(offset);
    if (next != free_.begin()) {
        const auto previous = std::prev(next);
        if (previous->first + previous->second == offset) {
            offset = previous->first;
            size += previous->second;
            Erase(previous);
        }
    }
    if (next != free_.end() && next->first == offset + size) {
        size += next->second;
        Erase(next);
    }
    if (offset + size == end_)
        end_ = offset;
    else
        Insert(offset, size);
}

void SpaceMap::Reuse()
{
    for (const auto& [offset, size] : parked_)
        Free(offset, size);
    parked_.clear();
}

void SpaceMap::StartWith(std::int64_t end)
{
    const std::int64_t first = end_;
    end_ = RoundUp(end);
    if (end_ > first)
        Insert(first, end_ - first);
}

bool SpaceMap::Use(std::int64_t offset, std::int64_t size)
{
    // Both may come from a damaged file.
    if (offset < 0 || offset % Unit != 0 || size < 1 || offset > end_ || size > end_ - offset)
        return false;
    size = RoundUp(size);
    auto extent = free_.upper_bound(offset);
    if (extent == free_.begin())
        return false;
    --extent;
    const auto [from, length] = *extent;
    if (size > length || offset - from > length - size)
        return false;
    Erase(extent);
    if (offset > from)
        Insert(from, offset - from);
    if (from + length > offset + size)
        Insert(offset + size, from + length - offset - size);
    return true;
}

void SpaceMap::FreeAllLater()
{
    for (const auto& [offset, size] : free_)
        parked_.emplace_back(offset, size);
    free_.clear();
    sizes_.clear();
}
