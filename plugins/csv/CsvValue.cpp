#include "CsvValue.h"

namespace {

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// A text that is gone through from its front.
struct Rest
{
    std::string_view text;

    bool Take(char character)
    {
        const bool there = !text.empty() && text.front() == character;
        text.remove_prefix(there);
        return there;
    }
    /// Digits of a number up to `most`.
    bool TakeNumber(std::size_t digits, int least, int most)
    {
        int number = 0;
        if (text.size() < digits)
            return false;
        for (const char character : text.substr(0, digits)) {
            if (!IsDigit(character))
                return false;
            number = number * 10 + character - '0';
        }
        text.remove_prefix(digits);
        return number >= least && number <= most;
    }
    bool TakeDigits()
    {
        const std::size_t before = text.size();
        while (!text.empty() && IsDigit(text.front()))
            text.remove_prefix(1);
        return text.size() < before;
    }
};

bool TakeDate(Rest& rest)
{
    return rest.TakeNumber(4, 0, 9999) && rest.Take('-') && rest.TakeNumber(2, 1, 12) && rest.Take('-') &&
           rest.TakeNumber(2, 1, 31);
}

bool TakeTime(Rest& rest)
{
    if (!rest.TakeNumber(2, 0, 24) || !rest.Take(':') || !rest.TakeNumber(2, 0, 59))
        return false;
    if (rest.Take(':') && !rest.TakeNumber(2, 0, 60))
        return false;
    return (!rest.Take('.') && !rest.Take(',')) || rest.TakeDigits();
}

bool TakeZone(Rest& rest)
{
    if (rest.text.empty() || rest.Take('Z'))
        return true;
    if (!rest.Take('+') && !rest.Take('-'))
        return false;
    if (!rest.TakeNumber(2, 0, 23))
        return false;
    return rest.text.empty() || (rest.Take(':'), rest.TakeNumber(2, 0, 59));
}

}  // namespace

std::string_view CsvTrim(std::string_view text)
{
    const auto isBlank = [](char character) { return character == ' ' || character == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool CsvIsDateTime(std::string_view text)
{
    Rest rest{text};
    if (text.size() > 2 && text[2] == ':')
        return TakeTime(rest) && TakeZone(rest) && rest.text.empty();
    if (!TakeDate(rest))
        return false;
    return rest.text.empty() ||
           ((rest.Take('T') || rest.Take(' ')) && TakeTime(rest) && TakeZone(rest) && rest.text.empty());
}

bool CsvValue::GetDouble(const CsvCell& cell, double& value) const
{
    const std::string_view text = CsvTrim(cell.View());
    const char* const end = text.data() + text.size();
    // A number too large for a double is none: it would come back as infinite.
    return !text.empty() && ReadDouble(text.data(), end, value) == end &&
           (std::isfinite(value) || text.find_first_of("0123456789") == text.npos);
}

bool CsvValue::GetHuge(const CsvCell& cell, std::int64_t& value) const
{
    const std::string_view text = CsvTrim(cell.View());
    const char* const end = text.data() + text.size();
    return !text.empty() && ReadHuge(text.data(), end, value) == end;
}

std::uint32_t CsvValue::ClassifyAny(const CsvCell& cell) const
{
    const std::string_view text = CsvTrim(cell.View());
    if (text.empty())
        return cell.quoted ? (cell.begin == cell.end ? CsvKind::QuotedEmpty : CsvKind::Text) : CsvKind::Empty;
    if (cell.quoted && !quotedNumbers_)
        return CsvIsDateTime(text) ? CsvKind::DateTime : CsvKind::Text;
    std::int64_t whole = 0;
    double number = 0.0;
    constexpr std::int64_t exact = std::int64_t(1) << 53;
    if (GetHuge(cell, whole)) {
        if (whole >= INT32_MIN && whole <= INT32_MAX)
            return CsvKind::Long;
        return CsvKind::Huge | (whole > exact || whole < -exact ? CsvKind::Wide : 0U);
    }
    if (GetDouble(cell, number))
        return CsvKind::Double;
    return CsvIsDateTime(text) ? CsvKind::DateTime : CsvKind::Text;
}
