#pragma once

#include <cstdint>
#include <cstring>

/// Turns values of the other byte order in place.
/// @param size  of one value in bytes: 4 or 8
inline void SwapValues(void* values, std::int64_t bytes, int size)
{
    auto* at = static_cast<unsigned char*>(values);
    for (auto* const end = at + bytes; at < end; at += size) {
        std::uint32_t bits4 = 0;
        std::uint64_t bits8 = 0;
        if (size == 4) {
            std::memcpy(&bits4, at, 4);
            bits4 = __builtin_bswap32(bits4);
            std::memcpy(at, &bits4, 4);
        } else {
            std::memcpy(&bits8, at, 8);
            bits8 = __builtin_bswap64(bits8);
            std::memcpy(at, &bits8, 8);
        }
    }
}
