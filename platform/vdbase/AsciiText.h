#pragma once

#include <algorithm>
#include <string_view>

/// Case and white space of byte texts. Only ASCII letters have a case, whatever the locale.

inline constexpr std::string_view VVWhiteSpace = " \t\r\n\v\f";

constexpr char VFAsciiUpper(char byte) noexcept
{
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

constexpr char VFAsciiLower(char byte) noexcept
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Below 0, 0 or above 0. Letters count as lower case, bytes as unsigned.
constexpr int VFCompareNoCase(std::string_view left, std::string_view right) noexcept
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t at = 0; at < common; ++at) {
        const auto leftByte = static_cast<unsigned char>(VFAsciiLower(left[at]));
        const auto rightByte = static_cast<unsigned char>(VFAsciiLower(right[at]));
        if (leftByte != rightByte)
            return leftByte < rightByte ? -1 : 1;
    }
    return left.size() == right.size() ? 0 : (left.size() < right.size() ? -1 : 1);
}
