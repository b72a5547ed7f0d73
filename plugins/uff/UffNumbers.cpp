#include "UffNumbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr std::string_view VVBlanks = " \t";

bool IsBlank(char character)
{
    return character == ' ' || character == '\t';
}

/// Reads the number at the beginning of a text.
/// @return its end; null if there is none
template <class T>
const char* ReadNumber(const char* begin, const char* end, T* value)
{
    if (begin < end && *begin == '+')
        ++begin;
    const auto [stop, error] = std::from_chars(begin, end, *value);
    if (error == std::errc::result_out_of_range) {
        // Too small is 0, too large is infinite, as strtod has it.
        const std::string text(begin, stop);
        *value = static_cast<T>(std::strtod(text.c_str(), nullptr));
        return stop;
    }
    return error == std::errc() ? stop : nullptr;
}

/// A number whose exponent isn't marked by "E": "1.5D+03", "1.5+103".
template <class T>
bool ReadFortranNumber(std::string_view text, T* value)
{
    std::string usual(text);
    const std::size_t mark = usual.find_first_of("DdQq");
    if (mark != std::string::npos) {
        usual[mark] = 'E';
    } else {
        const std::size_t sign = usual.find_first_of("+-", 1);
        if (sign == std::string::npos || usual.find_first_of("Ee") != std::string::npos)
            return false;
        usual.insert(sign, "E");
    }
    return ReadNumber(usual.data(), usual.data() + usual.size(), value) == usual.data() + usual.size();
}

template <class T>
bool ReadWhole(std::string_view text, T* value)
{
    T read{};
    const char* const end = text.data() + text.size();
    if (ReadNumber(text.data(), end, &read) != end && !ReadFortranNumber(text, &read))
        return false;
    *value = read;
    return true;
}

std::string_view Trim(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(VVBlanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(VVBlanks) - first + 1);
}

/// Numbers parted by blanks, and nothing else.
template <class T>
bool ReadTokens(std::string_view line, std::vector<T>* values)
{
    const char* at = line.data();
    const char* const end = at + line.size();
    for (;;) {
        while (at < end && IsBlank(*at))
            ++at;
        if (at == end)
            return true;
        T value{};
        const char* stop = ReadNumber(at, end, &value);
        if (stop == nullptr || (stop < end && !IsBlank(*stop))) {
            stop = std::find_if(at, end, IsBlank);
            if (!ReadFortranNumber(std::string_view(at, static_cast<std::size_t>(stop - at)), &value))
                return false;
        }
        values->push_back(value);
        at = stop;
    }
}

/// Numbers that fill their columns up to the right, so that only a sign or asterisks may follow the one before at once.
template <class T>
bool ReadColumns(std::string_view line, const UffColumns& columns, int expected, std::vector<T>* values)
{
    const int most = expected > 0 ? expected : columns.GetCount();
    line = line.substr(0, line.find_last_not_of(VVBlanks) + 1);
    std::size_t at = 0;
    for (int field = 0; field < most && at < line.size(); ++field) {
        const std::string_view text = line.substr(at, static_cast<std::size_t>(columns.GetWidth(field)));
        T value{};
        const bool joins = at > 0 && !IsBlank(line[at - 1]) && !IsBlank(text.front());
        const bool isLeft = IsBlank(text.back()) && !Trim(text).empty();
        if (isLeft || (joins && std::string_view("+-*").find(text.front()) == std::string_view::npos) ||
            !UffReadField(text, &value))
            return false;
        values->push_back(value);
        at += static_cast<std::size_t>(columns.GetWidth(field));
    }
    return at >= line.size();
}

/// Numbers that a sign, or nothing, parts from each other.
template <class T>
bool ReadRunTogether(std::string_view line, std::vector<T>* values)
{
    const char* at = line.data();
    const char* const end = at + line.size();
    while (at != nullptr && at < end) {
        if (IsBlank(*at)) {
            ++at;
            continue;
        }
        T value{};
        at = ReadNumber(at, end, &value);
        if (at != nullptr)
            values->push_back(value);
    }
    return at != nullptr;
}

}  // namespace

template <class T>
bool UffReadField(std::string_view field, T* value)
{
    const std::string_view text = Trim(field);
    if (text.empty()) {
        *value = 0;
        return true;
    }
    if (text.find_first_not_of('*') == std::string_view::npos) {
        *value = std::numeric_limits<T>::quiet_NaN();
        return true;
    }
    return ReadWhole(text, value);
}

template bool UffReadField(std::string_view, float*);
template bool UffReadField(std::string_view, double*);

bool UffReadField(std::string_view field, long long* value)
{
    std::string_view text = Trim(field);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    long long read = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, read);
    if (!text.empty() && (error != std::errc() || stop != end))
        return false;
    *value = read;
    return true;
}

std::string_view UffColumns::DropCutField(std::string_view line) const
{
    std::size_t whole = 0;
    for (int field = 0;; ++field) {
        const std::size_t next = whole + static_cast<std::size_t>(GetWidth(field));
        if (next > line.size())
            return line.substr(0, whole);
        whole = next;
    }
}

template <class T>
bool UffReadLine(std::string_view line, const UffColumns& columns, int expected, std::vector<T>* values)
{
    const std::size_t before = values->size();
    const auto fits = [&](bool isRead) {
        const auto count = static_cast<int>(values->size() - before);
        const bool good = isRead && count == expected;
        if (!good)
            values->resize(before);
        return good;
    };
    if (expected > 0 && (fits(ReadTokens(line, values)) || fits(ReadColumns(line, columns, expected, values))))
        return true;
    // Fewer or more than expected: what the line holds all the same.
    const auto read = [&](bool isRead) {
        if (!isRead)
            values->resize(before);
        return isRead;
    };
    return read(ReadColumns(line, columns, 0, values)) || read(ReadTokens(line, values)) ||
           read(ReadRunTogether(line, values));
}

template bool UffReadLine(std::string_view, const UffColumns&, int, std::vector<float>*);
template bool UffReadLine(std::string_view, const UffColumns&, int, std::vector<double>*);

std::string UffWriteNumber(double value, int width, int digits)
{
    char buffer[64];
    char* const stop = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, digits).ptr;
    std::string text(buffer, stop);
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c == 'e' ? 'E' : c; });
    const auto wanted = static_cast<std::size_t>(width);
    return text.size() < wanted ? std::string(wanted - text.size(), ' ') + text : text;
}
