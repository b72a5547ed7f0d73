#include "NumberText.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

template <class Integer>
char* VFPutInteger(char* at, Integer value)
{
    return std::to_chars(at, at + NumberTextSize, value).ptr;
}

char* VFPutText(char* at, const char* text)
{
    const std::size_t length = std::strlen(text);
    std::memcpy(at, text, length);
    return at + length;
}

template <class Real>
char* VFPutReal(char* at, Real value)
{
    // Whole numbers stay plain where the shortest form would be 1e+05.
    constexpr Real plainLimit = sizeof(Real) == sizeof(float) ? Real(1 << 24) : Real(1LL << 53);
    if (std::abs(value) < plainLimit) {
        const auto whole = static_cast<std::int64_t>(value);
        if (static_cast<Real>(whole) == value)
            return whole == 0 && std::signbit(value) ? VFPutText(at, "-0.0") : VFPutInteger(at, whole);
    }
    if (std::isnan(value))
        return VFPutText(at, "nan");
    return std::to_chars(at, at + NumberTextSize, value).ptr;
}

}  // namespace

char* VFPutNumber(char* at, double value)
{
    return VFPutReal(at, value);
}

char* VFPutNumber(char* at, float value)
{
    return VFPutReal(at, value);
}

char* VFPutNumber(char* at, std::uint32_t value)
{
    return VFPutInteger(at, value);
}

char* VFPutNumber(char* at, std::uint64_t value)
{
    return VFPutInteger(at, value);
}

char* VFPutNumber(char* at, std::int64_t value)
{
    return VFPutInteger(at, value);
}

const char* VFNotFiniteText(double value)
{
    if (std::isnan(value))
        return "NaN";
    return value > 0 ? "Infinity" : "-Infinity";
}

template <class Number>
char* VFPutJsonNumber(char* at, Number value)
{
    if constexpr (std::is_floating_point_v<Number>)
        if (!std::isfinite(value)) {
            *at++ = '"';
            at = VFPutText(at, VFNotFiniteText(static_cast<double>(value)));
            *at++ = '"';
            return at;
        }
    return VFPutNumber(at, value);
}

template char* VFPutJsonNumber(char*, double);
template char* VFPutJsonNumber(char*, float);
template char* VFPutJsonNumber(char*, std::uint32_t);
template char* VFPutJsonNumber(char*, std::uint64_t);
template char* VFPutJsonNumber(char*, std::int64_t);
