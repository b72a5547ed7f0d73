#pragma once

#include "ValueText.h"

#include <limits>
#include <optional>

/// Numbers of one type as another, by value. Whatever is no number crosses by way of its text.

/// Holds every number of every property type exactly.
using Z4AnyNumber = long double;
static_assert(std::numeric_limits<Z4AnyNumber>::digits >= 64);

template <class T>
constexpr bool Z4IsNumber = Z4Number<T> && !std::is_same_v<T, bool>;

/// Nothing for a boolean, a text or a row.
template <class T>
std::optional<Z4AnyNumber> VFValueToNumber(const T& value)
{
    if constexpr (Z4IsNumber<T>)
        return static_cast<Z4AnyNumber>(value);
    else
        return std::nullopt;
}

/// A whole-number type takes only what it can hold exactly, a floating-point type the nearest value.
/// @return false, and `value` untouched, for a number outside the type's range and for a type that is none of numbers
template <class T>
bool VFNumberToValue(Z4AnyNumber number, T* value)
{
    if constexpr (Z4IsNumber<T>) {
        const bool isInside = number >= static_cast<Z4AnyNumber>(std::numeric_limits<T>::lowest()) &&
                              number <= static_cast<Z4AnyNumber>(std::numeric_limits<T>::max());
        if (std::floating_point<T> ? !isInside && std::isfinite(number) : !isInside || number != std::trunc(number))
            return false;
        *value = static_cast<T>(number);
        return true;
    } else {
        return false;
    }
}
