#pragma once

#include "CsvIndex.h"
#include "CsvSpool.h"
#include "CsvValue.h"

/// Writes a table down: titles, units and rows as text.
class CsvText
{
public:
    CsvText(const CsvDialect& dialect, const std::vector<CsvColumn>& columns);

    /// What stands in front of the rows: mark, remarks, titles, units. False if the encoding lacks a character of it.
    bool AppendHeader(std::string& text) const;
    /// Rows of a spool.
    /// @param unfit  takes the name of the setting because of which a cell can't be written; empty for a failure of the
    /// spool
    bool AppendRows(const CsvSpool& spool, std::int64_t first, std::int64_t count, std::string& text,
                    std::string& unfit) const;

private:
    bool AppendTitles(std::string& text) const;
    void AppendCell(std::size_t column, std::string_view cell, std::string& text) const;
    bool AppendEmpty(int type, std::string& text) const;
    bool AppendValue(const CsvSpool& spool, std::size_t column, std::uint64_t slot, std::string& text) const;
    void AppendDouble(double value, bool isFloat, std::string& text) const;
    void EndCell(std::size_t column, std::string& text) const;

    CsvDialect dialect_;
    const std::vector<CsvColumn>& columns_;
    CsvCells cells_;
    CsvValue values_;
};
