#pragma once

#include "CsvBlocks.h"

#include "vdbase/VDVariant.h"

#include <utility>

/// A table that is open for reading. Columns and rows count from 0. Failures are recorded.
class CsvTable
{
public:
    /// @return null, recorded, on failure
    static std::unique_ptr<CsvTable> Open(const std::string& filename, const CsvSettings& settings, const char* routine);

    const CsvIndex& GetIndex() const { return *index_; }
    std::int64_t GetChunkRows() const { return blocks_->GetChunkRows(); }

    /// Values of a column of numbers. Cells without one give NaN in a column of doubles, else 0.
    template <class Value>
    bool Read(std::size_t column, std::int64_t first, std::int64_t count, Value* values, const char* routine);
    /// The same with NaN for all cells that hold no value.
    template <class Value>
    bool ReadSamples(std::size_t column, std::int64_t first, std::int64_t count, Value* values, const char* routine);
    bool ReadTexts(std::size_t column, std::int64_t first, std::int64_t count, VDString* values, const char* routine);
    /// 1 for cells that hold a value.
    bool ReadValid(std::size_t column, std::int64_t first, std::int64_t count, char* valid, const char* routine);
    /// List of the least and the greatest value of a column, null variants where there is none. The first call goes over the
    /// table once for all columns.
    bool GetLimits(std::size_t column, VDVariant& limits, const char* routine);

private:
    explicit CsvTable(const std::string& filename) : io_(filename.c_str()) {}
    template <class Visitor>
    bool Visit(std::size_t column, std::int64_t first, std::int64_t count, const char* routine, Visitor&& visit);
    bool CalculateLimits(const char* routine);

    VDIo io_;
    std::shared_ptr<const CsvIndex> index_;
    std::optional<CsvBlocks> blocks_;
    std::vector<std::pair<double, double>> limits_;
};
