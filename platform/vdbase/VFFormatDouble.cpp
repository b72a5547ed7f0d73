#include "vdbase/VFNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

namespace {

/// A number rounded to some significant digits: sign, digits d1 d2 d3..., and the exponent of d1.d2d3...
struct RoundedNumber
{
    RoundedNumber(double value, int count) : negative(value < 0)
    {
        char buffer[32];
        const auto end =
            std::to_chars(std::begin(buffer), std::end(buffer), std::abs(value), std::chars_format::scientific, count - 1)
                .ptr;
        char* const mark = std::find(std::begin(buffer), end, 'e');
        std::remove_copy(std::begin(buffer), mark, std::back_inserter(digits), '.');
        std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
    }

    bool negative;
    std::string digits;
    int exponent = 0;
};

std::string Joined(std::string whole, std::string fraction, bool trailingZeros)
{
    if (!trailingZeros)
        fraction.erase(fraction.find_last_not_of('0') + 1);
    return fraction.empty() ? whole : whole + '.' + fraction;
}

std::string PlainText(const RoundedNumber& number, bool trailingZeros)
{
    std::string whole = number.negative ? "-" : "";
    if (number.exponent < 0)
        return Joined(whole + '0', std::string(static_cast<std::size_t>(-number.exponent - 1), '0') + number.digits,
                      trailingZeros);
    const auto wholeDigits = static_cast<std::size_t>(number.exponent) + 1;
    whole += number.digits.substr(0, wholeDigits);
    if (number.digits.size() <= wholeDigits)
        return whole.append(wholeDigits - number.digits.size(), '0');
    return Joined(whole, number.digits.substr(wholeDigits), trailingZeros);
}

std::string ExponentText(const RoundedNumber& number, bool trailingZeros)
{
    const std::string exponent = VFFormat64(std::abs(number.exponent), 10, 2).Str();
    return Joined((number.negative ? "-" : "") + number.digits.substr(0, 1), number.digits.substr(1), trailingZeros) + 'e' +
           (number.exponent < 0 ? '-' : '+') + exponent;
}

using Writer = std::string (*)(const RoundedNumber&, bool);

/// The text with as many digits as fit, or the shortest one if none fits. Only digits of the fraction are given up.
std::string FittingText(Writer writer, double value, int digits, bool trailingZeros, std::size_t maxLength)
{
    std::string text = writer(RoundedNumber(value, digits), trailingZeros);
    while (text.size() > maxLength && digits > 1 && text.find('.') != std::string::npos)
        text = writer(RoundedNumber(value, --digits), trailingZeros);
    return text;
}

}  // namespace

VDString VFFormatDouble(double value, int digits, int minExponent, int maxExponent, int trailingZeros, int maxLength)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    const int count = std::clamp(digits, 1, std::numeric_limits<double>::max_digits10);
    const std::size_t limit = maxLength > 0 ? static_cast<std::size_t>(maxLength) : std::string::npos;
    const int exponent = RoundedNumber(value, count).exponent;
    const auto fitting = [&](Writer writer) { return FittingText(writer, value, count, trailingZeros != 0, limit); };
    if (exponent < minExponent || exponent > maxExponent)
        return fitting(ExponentText);
    std::string plain = fitting(PlainText);
    if (plain.size() <= limit)
        return plain;
    std::string withExponent = fitting(ExponentText);
    return withExponent.size() < plain.size() ? withExponent : plain;
}
