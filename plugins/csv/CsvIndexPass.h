#pragma once

#include "CsvIndex.h"
#include "CsvRows.h"
#include "CsvValue.h"

/// The one pass over a file that makes its index.
class CsvIndexPass
{
public:
    CsvIndexPass(VDIo& io, std::int64_t size, const CsvGuess& guess, CsvIndex& index);
    /// @param maxRows  so many rows are enough
    /// @return false if the file can't be read
    bool Run(std::int64_t maxRows = INT64_MAX);

private:
    void ReadHeader(CsvRows& rows);
    void ReadRow(CsvRows& rows);
    const char* TakeCell(const CsvRows& rows, std::int64_t column, const char* begin);
    void TakeTime(const CsvCell& cell);
    void AddPlace(CsvIndex::Place place);
    void EndRows(CsvRows& rows, CsvRows::State state);
    void SetColumns();
    void SplitUnits(CsvColumn& column) const;
    void SetTimeSeries();
    void Tell(const std::string& damage);

    VDIo& io_;
    std::int64_t size_;
    CsvGuess guess_;
    CsvIndex& index_;
    CsvCells cells_;
    CsvValue values_;
    std::vector<std::string> titles_;
    std::vector<std::string> units_;
    std::vector<std::uint32_t> kinds_;
    CsvEvenTime time_;
    double rowTime_ = 0.0;  ///< of a row that may not be complete yet
    std::int64_t stride_;
    std::int64_t leastWidth_;    ///< cells of the shortest row
    std::int64_t longRows_ = 0;  ///< rows with more cells than the table has columns
    std::int64_t firstLongRow_ = 0;
    bool longRow_ = false;  ///< the present row is one
    bool openQuote_ = false;
    bool otherEncoding_ = false;  ///< something isn't UTF-8
};
