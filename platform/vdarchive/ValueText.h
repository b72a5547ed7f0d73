#pragma once

#include "vdbase/VFNumber.h"

#include <charconv>
#include <cmath>
#include <concepts>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Values and their texts. Numbers are written with as many digits as reading them back exactly takes; the locale never
/// matters. A reader gives false, and leaves `value`, for any other text and for one out of the type's range; what is too
/// small for the type is a zero.

template <class T>
concept Z4Number = std::integral<T> || std::floating_point<T>;

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
    } else {
        end = std::to_chars(text, text + sizeof text, value);
    }
    return VDString(std::string(text, end.ptr));
}

template <Z4Number T>
bool VFTextToValue(const char* text, T* value)
{
    if constexpr (std::floating_point<T>) {
        return VFAscToNum(text, value);
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
