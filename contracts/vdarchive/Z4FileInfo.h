#pragma once

#include "vdarchive/VDArchiveApi.h"

#include <cstdint>

/// How a storage file is laid out; fixed when it is made.
class VDARCHIVE_API Z4FileInfo
{
public:
    static constexpr std::uint32_t SmallestStreamIndexSize = 16;
    static constexpr std::uint32_t LargestStreamIndexSize = 65536;

    /// Records that one block of a stream's index covers. A small block costs more blocks, a large one more to write for one
    /// changed record.
    std::int64_t GetDefaultStreamIndexSize() const { return streamIndexSize_; }
    /// @return false, and nothing changed, outside the range above
    bool SetDefaultStreamIndexSize(std::int64_t size)
    {
        if (size < SmallestStreamIndexSize || size > LargestStreamIndexSize)
            return false;
        streamIndexSize_ = static_cast<std::uint32_t>(size);
        return true;
    }

private:
    std::uint32_t streamIndexSize_ = 1024;
};
