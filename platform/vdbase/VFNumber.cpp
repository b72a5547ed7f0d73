#include "vdbase/VFNumber.h"

#include "AsciiText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace {

std::string_view Trimmed(const char* text)
{
    std::string_view view = text == nullptr ? std::string_view() : std::string_view(text);
    view.remove_prefix(std::min(view.find_first_not_of(VVWhiteSpace), view.size()));
    view.remove_suffix(view.size() - (view.find_last_not_of(VVWhiteSpace) + 1));
    return view;
}

/// Takes the one sign that `from_chars` doesn't know, so that it can't be followed by another.
bool TakePlus(std::string_view* text)
{
    if (text->empty() || text->front() != '+')
        return true;
    text->remove_prefix(1);
    return !text->empty() && text->front() != '-';
}

/// Whether a decimal number that is out of range is so on the small side. Its value is its first digit that isn't 0, moved
/// by the exponent: what the two add up to can't be near 0 if the number is out of range.
bool IsUnderflow(std::string_view number)
{
    const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentAt);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    const std::int64_t magnitude = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    std::string_view exponentText = exponentAt < number.size() ? number.substr(exponentAt + 1) : std::string_view("0");
    if (exponentText.front() == '+')
        exponentText.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto result = std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (result.ec == std::errc::result_out_of_range)
        return exponentText.front() == '-';
    return exponent < -magnitude;
}

template <class T>
bool ParseWhole(const char* text, T* out)
{
    std::string_view number = Trimmed(text);
    T value = 0;
    if (!TakePlus(&number))
        return false;
    const char* const end = number.data() + number.size();
    const auto result = std::from_chars(number.data(), end, value);
    if (result.ptr != end || result.ec == std::errc::invalid_argument)
        return false;
    if (result.ec == std::errc::result_out_of_range) {
        if (!std::is_floating_point_v<T> || !IsUnderflow(number))
            return false;
        value = 0;
    }
    *out = value;
    return true;
}

bool IsBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

bool IsBlankOrLineEnd(char byte)
{
    return IsBlank(byte) || byte == '\r' || byte == '\n';
}

bool IsDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

}  // namespace

bool VFAscToNum(const char* text, int* out)
{
    return ParseWhole(text, out);
}

bool VFAscToNum(const char* text, std::int64_t* out)
{
    return ParseWhole(text, out);
}

bool VFAscToNum(const char* text, std::uint64_t* out)
{
    return ParseWhole(text, out);
}

bool VFAscToNum(const char* text, double* out)
{
    return ParseWhole(text, out);
}

bool VFAscToNum(const char* text, float* out)
{
    return ParseWhole(text, out);
}

bool VFAscToBoolean(const char* text, bool* out)
{
    const std::string_view word = Trimmed(text);
    const bool isTrue = VFCompareNoCase(word, "True") == 0;
    if (!isTrue && VFCompareNoCase(word, "False") != 0)
        return false;
    *out = isTrue;
    return true;
}

VDString VFFormat64(std::int64_t value, int base, int width)
{
    if (base < 2 || base > 36)
        return {};
    char buffer[std::numeric_limits<std::uint64_t>::digits + 1];
    const auto result = std::to_chars(std::begin(buffer), std::end(buffer), value, base);
    std::string text(std::begin(buffer), result.ptr);
    if (static_cast<std::int64_t>(text.size()) < width)
        text.insert(value < 0 ? 1 : 0, static_cast<std::size_t>(width) - text.size(), '0');
    return VDString(std::move(text));
}

bool VFRequal(double left, double right, double tolerance)
{
    if (left == right)
        return true;
    if (std::signbit(left) != std::signbit(right) || left == 0 || right == 0)
        return false;
    const double ratio = left / right;
    return (std::abs(left) > std::abs(right) ? ratio : 1 / ratio) <= tolerance;
}

void VFSqueeze(VDString* text, int mode)
{
    constexpr int atEnd = 1;
    constexpr int atBeginning = 2;
    constexpr int everywhere = 8;
    std::string squeezed = text->Str();
    if ((mode & everywhere) != 0) {
        // A run becomes its first byte, which becomes a blank; the ends are left to the steps below.
        const auto bothBlank = [](char left, char right) { return IsBlankOrLineEnd(left) && IsBlankOrLineEnd(right); };
        squeezed.erase(std::unique(squeezed.begin(), squeezed.end(), bothBlank), squeezed.end());
        std::replace_if(squeezed.begin(), squeezed.end(), IsBlankOrLineEnd, ' ');
    }
    if ((mode & (atEnd | everywhere)) != 0)
        squeezed.erase(std::find_if_not(squeezed.rbegin(), squeezed.rend(), IsBlank).base(), squeezed.end());
    if ((mode & (atBeginning | everywhere)) != 0)
        squeezed.erase(squeezed.begin(), std::find_if_not(squeezed.begin(), squeezed.end(), IsBlank));
    *text = std::move(squeezed);
}

VDString VFMakeNumericallySortableString(const char* text)
{
    const std::string_view whole = text == nullptr ? std::string_view() : std::string_view(text);
    std::string sortable;
    for (auto at = whole.begin(); at != whole.end();) {
        if (!IsDigit(*at)) {
            sortable += *at++;
            continue;
        }
        const auto end = std::find_if_not(at, whole.end(), IsDigit);
        at = std::find_if(at, end, [](char digit) { return digit != '0'; });
        // The number of digits goes before them: a 9 for every nine of them, then the rest as one digit. So the longer
        // number is the greater one however long they are, and a number still sorts among texts as a digit does.
        const auto digits = static_cast<std::size_t>(end - at);
        sortable.append(digits / 9, '9');
        sortable += static_cast<char>('0' + digits % 9);
        sortable.append(at, end);
        at = end;
    }
    return VDString(std::move(sortable));
}
