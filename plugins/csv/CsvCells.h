#pragma once

#include "CsvDialect.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// One cell of a row, where it lies in the file's bytes.
struct CsvCell
{
    const char* begin = nullptr;  ///< within the quotes, if there are any
    const char* end = nullptr;
    std::uint64_t counts = 0;  ///< of the characters by kind, see `CsvCells::Count`
    bool quoted = false;
    bool escaped = false;  ///< there are doubled quotes inside

    std::string_view View() const { return {begin, static_cast<std::size_t>(end - begin)}; }
    /// The text without doubled quotes, in the file's encoding.
    void AppendTo(std::string& text) const;
};

/// Finds cells and rows. What is scanned has a zero byte behind its end. One pass over a cell finds where it ends and what
/// kinds of characters it is made of: each character adds to a count of its kind, so that the loop has one branch.
class CsvCells
{
public:
    enum Count : unsigned { Digits = 0, Points = 12, Signs = 24, Exponents = 36, Others = 48 };
    /// A cell longer than this may have counted beyond the room of a count.
    static constexpr std::ptrdiff_t MaxCounted = 4000;
    static constexpr std::uint64_t One(Count count) { return std::uint64_t(1) << count; }
    static constexpr std::uint64_t Get(std::uint64_t counts, Count count) { return counts >> count & 0xfff; }

    explicit CsvCells(const CsvDialect& dialect);

    bool IsBlankSeparated() const { return separator_ == ' '; }
    /// Whether a character ends an unquoted cell.
    bool IsStop(char character) const { return (kinds_[static_cast<unsigned char>(character)] & Stop) != 0; }

    /// Reads the cell that begins here.
    /// @return what ends it: a separator, a line end or a zero byte; `end` too for quotes that are never closed
    const char* Scan(const char* at, const char* end, CsvCell& cell) const
    {
        // Blanks in front of quotes don't count.
        const char* const first = SkipBlanks(at);
        if (*first == '"')
            if (const char* stop = ScanQuoted(first, end, cell))
                return stop;
        const char* p = at;
        std::uint64_t counts = 0;
        for (std::uint64_t kind = 0; ((kind = kinds_[static_cast<unsigned char>(*p)]) & Stop) == 0; ++p)
            counts += kind;
        cell = {at, p, counts, false, false};
        return p;
    }

    enum Row { Complete, Blank, Incomplete, NoText };
    /// Reads the row that begins at `at`, which moves behind it unless it is incomplete.
    /// @param final  the end is that of the file
    /// @param cell   called with (column, begin) for each cell, in order; gives what ends the cell, or null where more of
    /// the
    ///               file is needed
    /// @param count  takes the number of cells
    template <class Handler>
    Row ScanRow(const char*& at, const char* end, bool final, Handler&& cell, std::int64_t& count) const
    {
        const char* p = SkipBlanks(at);
        count = 0;
        if (p == end && !final)
            return Incomplete;
        if (p == end || *p == '\n' || *p == '\r')
            return EndLine(p, end, final, at) ? Blank : Incomplete;
        if (!IsBlankSeparated())
            p = at;
        for (;;) {
            const char* stop = cell(count, p);
            if (stop == nullptr)
                return Incomplete;
            ++count;
            if (IsBlankSeparated())
                stop = SkipBlanks(stop);
            if (stop == end)
                return final ? (at = end, Complete) : Incomplete;
            if (*stop == '\n' || *stop == '\r')
                return EndLine(stop, end, final, at) ? Complete : Incomplete;
            if (*stop == 0)
                return NoText;
            p = IsBlankSeparated() ? stop : stop + 1;
        }
    }

    /// Behind the blanks that aren't separators; of a table whose separators are blanks, behind those.
    const char* SkipBlanks(const char* p) const
    {
        while (*p == ' ' || (*p == '\t' && separator_ != '\t'))
            ++p;
        return p;
    }

private:
    static constexpr std::uint64_t Stop = std::uint64_t(1) << 63;

    const char* ScanQuoted(const char* at, const char* end, CsvCell& cell) const;
    const char* FindClosed(const char* at, const char* end, CsvCell& cell) const;
    /// Moves behind a line end; false if its second half may be still to come.
    static bool EndLine(const char* p, const char* end, bool final, const char*& at)
    {
        if (p != end && *p == '\r') {
            if (p + 1 == end && !final)
                return false;
            p += p[1] == '\n';
        }
        at = p == end ? end : p + 1;
        return true;
    }

    char separator_;
    std::array<std::uint64_t, 256> kinds_;
};
