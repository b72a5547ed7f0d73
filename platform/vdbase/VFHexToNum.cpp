#include "vdbase/VFNumber.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

bool VFHexToNum(const char* text, int* out)
{
    constexpr std::string_view blanks = " \t\r\n\v\f";
    constexpr std::size_t maxDigits = 8;
    std::string_view digits = text == nullptr ? std::string_view() : std::string_view(text);
    digits.remove_prefix(std::min(digits.find_first_not_of(blanks), digits.size()));
    digits = digits.substr(0, digits.find_last_not_of(blanks) + 1);
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X'))
        digits.remove_prefix(2);
    if (digits.empty() || digits.size() > maxDigits)
        return false;
    std::uint32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc() || stop != end)
        return false;
    *out = static_cast<int>(value);
    return true;
}
