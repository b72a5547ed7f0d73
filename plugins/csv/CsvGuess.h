#pragma once

#include "CsvDialect.h"

#include "vdbase/VDIo.h"

#include <cstdint>

/// What the beginning of a file says about its table.
struct CsvGuess
{
    CsvDialect dialect;
    std::int64_t tableOffset = 0;  ///< of the first row of the table, which may be its header
    std::int64_t columns = 0;
    double regular = 0.0;   ///< share of the rows that have the usual number of cells
    double numeric = 0.0;   ///< share of the cells below the header that are numbers, dates or empty
    std::int64_t rows = 0;  ///< that were looked at

    /// Rows in front of the data: the header and the units.
    int GetHeaderRows() const { return dialect.header ? 1 + (dialect.units == CsvDialect::UnitsLine) : 0; }
    /// Whether this is a table at all.
    /// @param named  the file's extension is one of tables; otherwise the evidence has to be stronger
    bool IsTable(bool named) const;

    /// Looks at the beginning of a file.
    /// @param settings  what the host knows better
    /// @return false if it holds no text, or no row; what failed to be read is recorded
    bool Make(VDIo& io, std::int64_t size, const CsvSettings& settings);

    /// Whether bytes can be the beginning of a table. Those of formats with signatures made of text can't.
    static bool MayBeTable(const char* bytes, std::int64_t size);
};
