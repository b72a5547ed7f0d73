#include "CsvWriter.h"

#include "CsvEncoding.h"
#include "CsvReport.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

CsvWriter::CsvWriter(const std::string& filename, const CsvDialect& dialect, bool unitsAreWished)
    : output_(filename), dialect_(dialect), unitsAreWished_(unitsAreWished)
{
}

CsvWriter::CsvWriter(const std::string& filename, const CsvIndex& present)
    : output_(filename),
      dialect_(present.GetDialect()),
      columns_(present.GetColumns()),
      isNew_(false),
      presentRows_(present.GetNumRows()),
      presentBytes_(present.GetEnd()),
      presentEnded_(present.IsEnded()),
      rows_(present.GetNumRows()),
      written_(true),
      writtenRows_(present.GetNumRows()),
      writtenBytes_(present.GetEnd())
{
}

bool CsvWriter::Fail(int code, const char* routine, const std::string& detail) const
{
    return PluginReport(code, routine, output_.GetFilename(), detail) != 0;
}

bool CsvWriter::AppendColumn(int type, bool withStatus, const char* routine)
{
    using namespace DaxColumnType;
    if (!isNew_ || spool_ || rows_ > 0)
        return Fail(CsvError::Columns, routine, "The columns of a table come before its rows.");
    if (static_cast<std::int64_t>(columns_.size()) >= CsvIndex::MaxColumns)
        return Fail(CsvError::Columns, routine, "A table has at most " + std::to_string(CsvIndex::MaxColumns) + " columns.");
    for (const int known : {Text, Long, Float, Short, Huge, Double, DateTime})
        if (type == known) {
            columns_.push_back({{}, {}, type, withStatus, false});
            changed_ = true;
            return true;
        }
    return Fail(CsvError::ColumnType, routine, "A table as text has no columns of type " + std::to_string(type) + ".");
}

bool CsvWriter::SetTitle(std::size_t column, const std::string& title, const char* routine)
{
    if (!isNew_)
        return title == columns_[column].title ||
               Fail(CsvError::Write, routine, "The titles of a table that is there stay.");
    columns_[column].title = CsvDecode(title, CsvDialect::Utf8);
    changed_ = true;
    return true;
}

bool CsvWriter::SetUnits(std::size_t column, const std::string& units, const char* routine)
{
    if (!isNew_)
        return units == columns_[column].units || Fail(CsvError::Write, routine, "The units of a table that is there stay.");
    columns_[column].units = CsvDecode(units, CsvDialect::Utf8);
    changed_ = true;
    return true;
}

bool CsvWriter::SetNumRows(std::int64_t rows, const char* routine)
{
    if (rows < rows_)
        return Fail(CsvError::Write, routine, "The table has " + std::to_string(rows_) + " rows already.");
    rows_ = rows;
    return true;
}

CsvSpool& CsvWriter::GetSpool()
{
    if (!spool_)
        spool_.emplace(output_.GetFolder(), columns_.size());
    return *spool_;
}

bool CsvWriter::Touch(std::int64_t row, std::int64_t count, const char* routine)
{
    if (row < presentRows_)
        return Fail(CsvError::Write, routine, "Rows that are in the file already can't be changed; others can be appended.");
    unfit_.clear();
    changed_ = changed_ || row < writtenRows_;
    rows_ = std::max(rows_, row + count);
    return true;
}

bool CsvWriter::Put(std::size_t column, std::int64_t row, const std::vector<std::uint64_t>& slots, const char* routine)
{
    return Touch(row, static_cast<std::int64_t>(slots.size()), routine) &&
           (GetSpool().Put(column, row - presentRows_, slots) || Fail(CsvError::Staging, routine, std::strerror(errno)));
}

bool CsvWriter::PutInvalid(std::size_t column, std::int64_t row, const std::vector<char>& invalid, const char* routine)
{
    columns_[column].hasInvalid = true;
    return Touch(row, static_cast<std::int64_t>(invalid.size()), routine) &&
           (GetSpool().PutInvalid(column, row - presentRows_, invalid) ||
            Fail(CsvError::Staging, routine, std::strerror(errno)));
}

bool CsvWriter::PutText(const std::string& text, std::uint64_t& slot, const char* routine)
{
    std::string encoded;
    unfit_.clear();
    if (!CsvEncode(text, dialect_.encoding, encoded)) {
        unfit_ = CsvSettings::GetName(CsvSettings::Encoding);
        return Fail(CsvError::Write, routine, "Windows-1252 lacks a character of the text \"" + text + "\".");
    }
    if (encoded.size() >= CsvSpool::MaxText || encoded.find('\0') != encoded.npos)
        return Fail(CsvError::Write, routine, "A cell holds less than 64 MiB of text without zero bytes.");
    return GetSpool().PutText(encoded, slot) || Fail(CsvError::Staging, routine, std::strerror(errno));
}

bool CsvWriter::Get(std::size_t column, std::int64_t row, std::int64_t count, CsvSpool::Cells& cells, const char* routine)
{
    return GetSpool().Get(column, row - presentRows_, count, cells) ||
           Fail(CsvError::Staging, routine, std::strerror(errno));
}

bool CsvWriter::GetText(std::uint64_t slot, std::string& text, const char* routine)
{
    std::string bytes;
    if (!GetSpool().GetText(slot, bytes))
        return Fail(CsvError::Staging, routine, std::strerror(errno));
    text = CsvDecode(bytes, dialect_.encoding);
    return true;
}

/// A line of units is known as one by standing over every column of numbers; otherwise units go into the titles.
void CsvWriter::ChooseUnits()
{
    constexpr std::size_t longest = 24;
    const auto hasUnits = [](const CsvColumn& column) { return !column.units.empty(); };
    const auto looksSo = [](const CsvColumn& column) { return column.title.ends_with(']'); };
    const auto breaksLine = [](const CsvColumn& column) {
        return column.units.size() > longest || (column.IsNumeric() && column.units.empty());
    };
    const auto isNumeric = [](const CsvColumn& column) { return column.IsNumeric(); };
    if (!dialect_.header || written_)
        return;
    const bool any = std::any_of(columns_.begin(), columns_.end(), hasUnits);
    const bool line = any && rows_ > 0 && std::any_of(columns_.begin(), columns_.end(), isNumeric) &&
                      std::none_of(columns_.begin(), columns_.end(), breaksLine);
    const bool brackets = any || std::any_of(columns_.begin(), columns_.end(), looksSo);
    const bool wishesLine = !unitsAreWished_ || dialect_.units == CsvDialect::UnitsLine;
    if (unitsAreWished_ && dialect_.units == CsvDialect::NoUnits)
        return;
    dialect_.units = line && wishesLine ? CsvDialect::UnitsLine
                     : brackets         ? CsvDialect::UnitsInBrackets
                                        : CsvDialect::NoUnits;
}

bool CsvWriter::WriteRows(const CsvText& text, std::int64_t from, const char* routine)
{
    CsvSpool& spool = GetSpool();
    std::string bytes;
    for (std::int64_t row = from; row < rows_;) {
        const std::int64_t chunk = spool.GetChunkRows();
        const std::int64_t at = row - presentRows_;
        const std::int64_t count = std::min(rows_ - row, chunk - at % chunk);
        bytes.clear();
        if (!text.AppendRows(spool, at, count, bytes, unfit_))
            return unfit_.empty()
                       ? Fail(CsvError::Staging, routine, std::strerror(errno))
                       : Fail(CsvError::Write, routine,
                              "Text without a value can't be told from empty text between blanks or alone in its row.");
        if (!output_.Write(bytes))
            return Fail(CsvError::Write, routine, output_.GetReason());
        row += count;
    }
    return true;
}

bool CsvWriter::WriteAnew(const char* routine)
{
    ChooseUnits();
    const CsvText text(dialect_, columns_);
    std::string header;
    if (isNew_ && !text.AppendHeader(header)) {
        unfit_ = CsvSettings::GetName(CsvSettings::Encoding);
        return Fail(CsvError::Write, routine, "Windows-1252 lacks a character of the titles, units or remarks.");
    }
    if (!isNew_ && !presentEnded_)
        header = dialect_.lineEnd;
    return ((output_.Begin() && output_.CopyFromPresent(isNew_ ? 0 : presentBytes_) && output_.Write(header)) ||
            Fail(CsvError::Write, routine, output_.GetReason())) &&
           WriteRows(text, presentRows_, routine);
}

bool CsvWriter::Publish(const char* routine)
{
    unfit_.clear();
    if (columns_.empty() || (written_ && !changed_ && rows_ == writtenRows_))
        return true;
    bool whole = false;
    if (!written_ || changed_)
        whole = WriteAnew(routine);
    else {
        const bool endsRow = !isNew_ && !presentEnded_ && writtenRows_ == presentRows_;
        whole = ((output_.Continue(writtenBytes_) && output_.Write(endsRow ? dialect_.lineEnd : std::string())) ||
                 Fail(CsvError::Write, routine, output_.GetReason())) &&
                WriteRows(CsvText(dialect_, columns_), writtenRows_, routine);
    }
    if (whole && !output_.Finish())
        whole = Fail(CsvError::Write, routine, output_.GetReason());
    if (!whole) {
        output_.GiveUp();
        return false;
    }
    written_ = true;
    changed_ = false;
    writtenRows_ = rows_;
    writtenBytes_ = output_.GetSize();
    return true;
}
