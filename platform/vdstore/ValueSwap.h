#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>

/// Turns values that stand in the other byte order in place.
/// @param size  of one value in bytes
inline void VFSwapValues(void* values, std::int64_t bytes, int size)
{
    auto* at = static_cast<unsigned char*>(values);
    const auto turn = [&]<int Size>(std::integral_constant<int, Size>) {
        for (auto* const end = at + bytes; at < end; at += Size)
            std::reverse(at, at + Size);
    };
    switch (size) {
    case 2:
        return turn(std::integral_constant<int, 2>());
    case 4:
        return turn(std::integral_constant<int, 4>());
    default:
        return turn(std::integral_constant<int, 8>());
    }
}

template <class T>
void VFSwapValues(T* values, std::int64_t count)
{
    VFSwapValues(values, count * std::int64_t{sizeof(T)}, int{sizeof(T)});
}
