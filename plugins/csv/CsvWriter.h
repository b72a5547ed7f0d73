#pragma once

#include "CsvOutput.h"
#include "CsvSpool.h"
#include "CsvText.h"

#include <optional>

/// A table that is being written: a new one, or rows behind those of one that is there. What was put goes into the file with
/// `Publish`. Columns and rows count from 0. Failures are recorded.
class CsvWriter
{
public:
    /// A new table.
    CsvWriter(const std::string& filename, const CsvDialect& dialect, bool unitsAreWished);
    /// Rows behind those of a table that is there.
    CsvWriter(const std::string& filename, const CsvIndex& present);

    const std::vector<CsvColumn>& GetColumns() const { return columns_; }
    const CsvDialect& GetDialect() const { return dialect_; }
    /// Rows that were in the file when it was opened, and can't be changed.
    std::int64_t GetPresentRows() const { return presentRows_; }
    std::int64_t GetNumRows() const { return rows_; }
    /// Name of the setting that the data don't fit; empty if there is none.
    const std::string& GetUnfit() const { return unfit_; }

    bool AppendColumn(int type, bool withStatus, const char* routine);
    bool SetTitle(std::size_t column, const std::string& title, const char* routine);
    bool SetUnits(std::size_t column, const std::string& units, const char* routine);
    bool SetNumRows(std::int64_t rows, const char* routine);
    bool Put(std::size_t column, std::int64_t row, const std::vector<std::uint64_t>& slots, const char* routine);
    bool PutText(const std::string& text, std::uint64_t& slot, const char* routine);
    bool PutInvalid(std::size_t column, std::int64_t row, const std::vector<char>& invalid, const char* routine);
    /// Cells behind the rows that were there.
    bool Get(std::size_t column, std::int64_t row, std::int64_t count, CsvSpool::Cells& cells, const char* routine);
    bool GetText(std::uint64_t slot, std::string& text, const char* routine);

    /// Brings the file up to date: a new file as a whole, more rows behind those that are in it.
    bool Publish(const char* routine);

private:
    bool Fail(int code, const char* routine, const std::string& detail) const;
    bool Touch(std::int64_t row, std::int64_t count, const char* routine);
    CsvSpool& GetSpool();
    void ChooseUnits();
    bool WriteAnew(const char* routine);
    bool WriteRows(const CsvText& text, std::int64_t from, const char* routine);

    CsvOutput output_;
    CsvDialect dialect_;
    bool unitsAreWished_ = true;
    std::vector<CsvColumn> columns_;
    std::optional<CsvSpool> spool_;
    bool isNew_ = true;  ///< the file has no rows but those of the spool
    std::int64_t presentRows_ = 0;
    std::int64_t presentBytes_ = 0;
    bool presentEnded_ = true;
    std::int64_t rows_ = 0;
    bool written_ = false;  ///< the file stands
    bool changed_ = false;  ///< something that is in the file already was put anew
    std::int64_t writtenRows_ = 0;
    std::int64_t writtenBytes_ = 0;
    std::string unfit_;
};
