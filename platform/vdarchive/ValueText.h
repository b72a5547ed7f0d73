#pragma once

#include "vdbase/VFNumber.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Values and their texts. Numbers are written with as many digits as reading them back exactly takes; the locale never
/// matters. A reader gives false, and leaves `value`, for any other text and for one out of the type's range; what is too
/// small for the type is a zero. A NaN with other bits than the usual ones has its fraction behind it, as in "nan(7ff)".

template <class T>
concept Z4Number = std::integral<T> || std::floating_point<T>;

/// The bits of a floating-point value, and which of them make up the fraction.
template <std::floating_point T>
struct Z4FloatBits
{
    using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
    static constexpr Bits Fraction = (Bits(1) << (std::numeric_limits<T>::digits - 1)) - 1;
    static constexpr Bits UsualNan = Bits(1) << (std::numeric_limits<T>::digits - 2);
};

/// What follows "nan".
template <std::floating_point T>
std::string VFNanToText(T nan)
{
    using Float = Z4FloatBits<T>;
    const auto fraction = std::bit_cast<typename Float::Bits>(nan) & Float::Fraction;
    char text[20];
    const auto end = std::to_chars(text, text + sizeof text, fraction, 16).ptr;
    return fraction == Float::UsualNan ? std::string() : "(" + std::string(text, end) + ")";
}

/// Gives a NaN the fraction that stands behind it in its text, if one does.
template <std::floating_point T>
void VFTextToNan(std::string_view text, T* nan)
{
    using Float = Z4FloatBits<T>;
    const std::size_t start = text.find('(') + 1;
    typename Float::Bits fraction = 0;
    const auto [end, error] = std::from_chars(text.data() + start, text.data() + text.size(), fraction, 16);
    if (start > 0 && error == std::errc() && *end == ')' && fraction > 0 && fraction <= Float::Fraction)
        *nan = std::bit_cast<T>((std::bit_cast<typename Float::Bits>(*nan) & ~Float::Fraction) | fraction);
}

template <Z4Number T>
VDString VFValueToText(T value)
{
    char text[400];
    std::to_chars_result end{};
    if constexpr (std::floating_point<T>) {
        // Sample rates and limits read better without an exponent; only very large and very small values need one.
        const T magnitude = std::abs(value);
        const bool plain = magnitude == 0 || (magnitude >= T(1e-4) && magnitude < T(1e15));
        end = plain ? std::to_chars(text, text + sizeof text, value, std::chars_format::fixed)
                    : std::to_chars(text, text + sizeof text, value);
        if (std::isnan(value))
            return VDString(std::string(text, end.ptr) + VFNanToText(value));
    } else {
        end = std::to_chars(text, text + sizeof text, value);
    }
    return VDString(std::string(text, end.ptr));
}

template <Z4Number T>
bool VFTextToValue(const char* text, T* value)
{
    if constexpr (std::floating_point<T>) {
        if (!VFAscToNum(text, value))
            return false;
        if (std::isnan(*value))
            VFTextToNan(text, value);
        return true;
    } else {
        std::conditional_t<std::signed_integral<T>, std::int64_t, std::uint64_t> read = 0;
        if (!VFAscToNum(text, &read) || !std::in_range<T>(read))
            return false;
        *value = static_cast<T>(read);
        return true;
    }
}

inline VDString VFValueToText(bool value)
{
    return value ? "True" : "False";
}

inline bool VFTextToValue(const char* text, bool* value)
{
    VDString trimmed(text);
    trimmed.Trim();
    if (trimmed == "0" || trimmed == "1") {
        *value = trimmed == "1";
        return true;
    }
    return VFAscToBoolean(trimmed, value);
}

inline VDString VFValueToText(const VDString& value)
{
    return value;
}

inline bool VFTextToValue(const char* text, VDString* value)
{
    *value = text;
    return true;
}

/// The numbers, a blank between them.
VDString VFValueToText(const std::vector<double>& value);
/// Any white space parts the numbers; an empty text is an empty row.
bool VFTextToValue(const char* text, std::vector<double>* value);
