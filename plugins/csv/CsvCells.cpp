#include "CsvCells.h"

void CsvCell::AppendTo(std::string& text) const
{
    if (!escaped) {
        text.append(begin, end);
        return;
    }
    for (const char* p = begin; p != end; ++p) {
        text += *p;
        p += *p == '"';
    }
}

CsvCells::CsvCells(const CsvDialect& dialect) : separator_(dialect.separator)
{
    kinds_.fill(One(Others));
    for (int digit = '0'; digit <= '9'; ++digit)
        kinds_[static_cast<std::size_t>(digit)] = One(Digits);
    kinds_['+'] = kinds_['-'] = One(Signs);
    kinds_['e'] = kinds_['E'] = One(Exponents);
    kinds_[static_cast<unsigned char>(dialect.decimal)] = One(Points);
    for (const char stop : {'\0', '\n', '\r', dialect.separator})
        kinds_[static_cast<unsigned char>(stop)] = Stop;
    if (IsBlankSeparated())
        kinds_['\t'] = Stop;
}

/// Null if the quotes are part of an ordinary cell, with more behind them than blanks. A zero byte inside ends the cell.
const char* CsvCells::ScanQuoted(const char* at, const char* end, CsvCell& cell) const
{
    const char* const stop = FindClosed(at, end, cell);
    const auto size = static_cast<std::size_t>(cell.end - cell.begin);
    const void* const zero = stop == nullptr ? nullptr : std::memchr(cell.begin, 0, size);
    return zero == nullptr ? stop : static_cast<const char*>(zero);
}

const char* CsvCells::FindClosed(const char* at, const char* end, CsvCell& cell) const
{
    cell = {at + 1, end, One(Others), true, false};
    for (const char* p = at + 1; p < end; ++p) {
        p = static_cast<const char*>(std::memchr(p, '"', static_cast<std::size_t>(end - p)));
        if (p == nullptr)
            return end;
        if (p[1] == '"') {
            cell.escaped = true;
            ++p;
            continue;
        }
        cell.end = p;
        const char* const stop = IsBlankSeparated() ? p + 1 : SkipBlanks(p + 1);
        return IsStop(*stop) ? stop : nullptr;
    }
    return end;
}
