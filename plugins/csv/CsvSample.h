#pragma once

#include "CsvCells.h"
#include "CsvDialect.h"

#include <cstdint>

/// The first rows of a file, taken apart in one dialect.
class CsvSample
{
public:
    /// @param text   with a zero byte behind it, and outlives the sample
    /// @param final  the text is the whole file; otherwise its last row may be cut off and doesn't count
    CsvSample(const CsvDialect& dialect, std::string_view text, bool final);

    std::size_t GetNumRows() const { return rows_.size(); }
    std::size_t GetWidth(std::size_t row) const { return rows_[row].width; }
    std::uint32_t GetKinds(std::size_t row, std::size_t column) const { return kinds_[rows_[row].first + column]; }
    std::string_view GetText(std::size_t row, std::size_t column) const { return cells_[rows_[row].first + column].View(); }
    std::string_view GetTextBehind(std::size_t row) const { return text_.substr(rows_[row].end); }

    /// The usual number of cells.
    std::size_t GetColumns() const { return columns_; }
    /// Cells of the first row up to the last one that isn't empty.
    std::size_t GetTitledWidth() const;
    /// Share of the rows that have the usual number of cells, be it without the empty ones at their end.
    double GetRegularShare() const;
    /// Share of the cells from a row on that aren't text.
    double GetNumericShare(std::size_t firstRow) const;
    /// All cells that aren't empty are in quotes.
    bool IsAllQuoted() const { return allQuoted_; }
    /// The first row is one of titles: texts over numbers, or, where all is text, texts that differ.
    bool HasHeader() const;
    /// The second row is one of units: texts again.
    bool HasUnits() const;

private:
    struct Row
    {
        std::size_t first;  ///< of its cells
        std::size_t width;
        std::size_t end;  ///< offset in the text
    };
    void FindColumns();
    bool IsText(std::size_t row, std::size_t column) const;
    /// The row has texts over columns of numbers, and no numbers but over texts.
    bool StandsOverNumbers(std::size_t row) const;

    std::string_view text_;
    std::vector<Row> rows_;
    std::vector<CsvCell> cells_;
    std::vector<std::uint32_t> kinds_;
    std::size_t columns_ = 0;
    bool allQuoted_ = false;
};
