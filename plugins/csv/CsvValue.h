#pragma once

#include "CsvCells.h"

#include <charconv>
#include <cmath>

#include <fast_float/fast_float.h>

/// What the cells of a column were, as bits.
namespace CsvKind {
enum Bits : std::uint32_t {
    Empty = 1,
    QuotedEmpty = 2,
    Long = 4,     ///< a whole number of 32 bits
    Huge = 8,     ///< one of 64 bits
    Wide = 16,    ///< with `Huge`: one that a double may not hold
    Double = 32,  ///< any other number
    DateTime = 64,
    Text = 128,
};
constexpr std::uint32_t Numbers = Long | Huge | Double;
}  // namespace CsvKind

/// Reads the values of cells.
class CsvValue
{
public:
    explicit CsvValue(const CsvDialect& dialect)
        : options_(fast_float::chars_format::general, dialect.decimal), quotedNumbers_(dialect.quotedNumbers)
    {
    }

    /// What kind of value a cell holds.
    std::uint32_t Classify(const CsvCell& cell) const
    {
        using Cells = CsvCells;
        const std::uint64_t counts = cell.counts;
        const std::uint64_t digits = Cells::Get(counts, Cells::Digits);
        // Nearly all cells of nearly all tables: a few digits, a point and a sign in front.
        constexpr std::uint64_t plain = (Cells::One(Cells::Exponents) - 1);
        const std::uint64_t signs = Cells::Get(counts, Cells::Signs);
        const bool signOk = signs == 0 || (signs == 1 && (*cell.begin == '-' || *cell.begin == '+'));
        const std::uint64_t points = Cells::Get(counts, Cells::Points);
        if ((counts & ~plain) == 0 && digits > 0 && points <= 1 && signOk && cell.end - cell.begin < Cells::MaxCounted) {
            if (points != 0)
                return digits < 300 ? CsvKind::Double : ClassifyAny(cell);
            return digits < 10 ? CsvKind::Long : ClassifyAny(cell);
        }
        return cell.begin == cell.end && !cell.quoted ? std::uint32_t(CsvKind::Empty) : ClassifyAny(cell);
    }

    /// Reads a number that begins here.
    /// @return behind it; null if there is none
    const char* ReadDouble(const char* begin, const char* end, double& value) const
    {
        begin = SkipPlus(begin, end);
        const auto [stop, failed] = fast_float::from_chars_advanced(begin, end, value, options_);
        return failed == std::errc() ? stop : nullptr;
    }
    static const char* ReadHuge(const char* begin, const char* end, std::int64_t& value)
    {
        begin = SkipPlus(begin, end);
        const auto [stop, failed] = std::from_chars(begin, end, value);
        return failed == std::errc() ? stop : nullptr;
    }

    /// Reads the whole cell, with blanks around what it holds.
    bool GetDouble(const CsvCell& cell, double& value) const;
    bool GetHuge(const CsvCell& cell, std::int64_t& value) const;

private:
    std::uint32_t ClassifyAny(const CsvCell& cell) const;
    static const char* SkipPlus(const char* begin, const char* end)
    {
        return end - begin > 1 && *begin == '+' && begin[1] != '-' ? begin + 1 : begin;
    }

    fast_float::parse_options options_;
    bool quotedNumbers_;
};

/// A text without blanks around it.
std::string_view CsvTrim(std::string_view text);
/// A date, a time of day or both as ISO 8601 has them, with a blank allowed between the two.
bool CsvIsDateTime(std::string_view text);
