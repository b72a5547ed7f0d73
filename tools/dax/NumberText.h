#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Numbers as text, in the fewest digits that read back as the same value, whatever the locale. Each call writes at most
/// `NumberTextSize` bytes from `at` on and gives the end of what it wrote.
constexpr std::size_t NumberTextSize = 32;

char* VFPutNumber(char* at, double value);
char* VFPutNumber(char* at, float value);
char* VFPutNumber(char* at, std::uint32_t value);
char* VFPutNumber(char* at, std::uint64_t value);
char* VFPutNumber(char* at, std::int64_t value);

/// What stands in JSON for a value that is no finite number: "NaN", "Infinity" or "-Infinity".
const char* VFNotFiniteText(double value);

/// The same for JSON: what is no finite number is a text.
template <class Number>
char* VFPutJsonNumber(char* at, Number value);

template <class Number>
std::string VFNumberText(Number value)
{
    char text[NumberTextSize];
    return std::string(text, VFPutNumber(text, value));
}
