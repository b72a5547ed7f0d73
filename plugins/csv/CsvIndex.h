#pragma once

#include "CsvEvenTime.h"
#include "CsvGuess.h"

#include "daxlib/XYAcc.h"

#include <memory>
#include <string>
#include <vector>

/// A column as the whole table shows it.
struct CsvColumn
{
    std::string title;  ///< texts in UTF-8
    std::string units;
    int type = 0;             ///< a `DaxColumnType`
    bool hasInvalid = false;  ///< some cells are empty or missing
    bool wide = false;        ///< whole numbers that a double may not hold
    bool IsNumeric() const;
};

/// What one pass over a file finds out about its table: the types of the columns, where rows begin (some of them, so that
/// the index of a file of any length has the same size), whether the first column is an even time, and what is wrong.
class CsvIndex
{
public:
    struct Place
    {
        std::int64_t row;
        std::int64_t offset;
    };
    static constexpr std::int64_t MaxColumns = std::int64_t(1) << 20;

    /// Goes through an open file, or gives what an earlier pass over the same file found. Nothing is recorded for a file
    /// that holds no table.
    /// @return null if it can't be read or holds no table
    static std::shared_ptr<const CsvIndex> Get(VDIo& io, const CsvSettings& settings);

    const CsvDialect& GetDialect() const { return dialect_; }
    const std::vector<CsvColumn>& GetColumns() const { return columns_; }
    std::int64_t GetNumRows() const { return rows_; }
    /// The nearest place that is known at or in front of a row.
    Place Find(std::int64_t row) const;
    /// Where the rows end.
    std::int64_t GetEnd() const { return end_; }
    /// Size of the file. Whether quotes are closed is seen up to there, so that rows are read up to there, too.
    std::int64_t GetFileEnd() const { return fileEnd_; }
    /// The last row has a line end.
    bool IsEnded() const { return ended_; }
    /// What of the file is missing or wrong; empty for a sound one.
    const std::string& GetDamage() const { return damage_; }

    /// The table is a time series: see `CsvTime`. Rate in Hz, first time in seconds.
    bool IsTimeSeries() const { return rate_ > 0.0; }
    double GetRate() const { return rate_; }
    double GetFirstTime() const { return firstTime_; }

private:
    friend class CsvIndexPass;

    CsvDialect dialect_;
    std::vector<CsvColumn> columns_;
    std::vector<Place> places_;
    std::int64_t rows_ = 0;
    std::int64_t end_ = 0;
    std::int64_t fileEnd_ = 0;
    bool ended_ = true;
    std::string damage_;
    double rate_ = 0.0;
    double firstTime_ = 0.0;
};

/// Whether a column is a time by its title or units.
namespace CsvTime {
/// @return how many seconds its unit has; 0 if it isn't a time
double GetSeconds(const CsvColumn& column);
}  // namespace CsvTime
