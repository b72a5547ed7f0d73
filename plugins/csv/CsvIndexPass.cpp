#include "CsvIndexPass.h"

#include "CsvEncoding.h"

#include <algorithm>

namespace {

constexpr std::size_t MaxPlaces = 65536;
constexpr std::int64_t FirstStride = 1 << 18;

int TypeOf(std::uint32_t kinds)
{
    using namespace CsvKind;
    const std::uint32_t values = kinds & (Numbers | DateTime | Text);
    if (values == 0)
        return (kinds & QuotedEmpty) != 0 ? DaxColumnType::Text : DaxColumnType::Double;
    if (values == DateTime)
        return DaxColumnType::DateTime;
    if ((values & ~Numbers) != 0)
        return DaxColumnType::Text;
    if ((values & Double) != 0)
        return DaxColumnType::Double;
    return (values & Huge) != 0 ? DaxColumnType::Huge : DaxColumnType::Long;
}

}  // namespace

CsvIndexPass::CsvIndexPass(VDIo& io, std::int64_t size, const CsvGuess& guess, CsvIndex& index)
    : io_(io),
      size_(size),
      guess_(guess),
      index_(index),
      cells_(guess.dialect),
      values_(guess.dialect),
      kinds_(static_cast<std::size_t>(guess.columns)),
      stride_(FirstStride),
      leastWidth_(guess.columns)
{
}

bool CsvIndexPass::Run(std::int64_t maxRows)
{
    CsvRows rows(io_, guess_.tableOffset, size_);
    index_.dialect_ = guess_.dialect;
    index_.fileEnd_ = size_;
    titles_.resize(kinds_.size());
    units_.resize(kinds_.size());
    ReadHeader(rows);
    const bool timely = guess_.dialect.header && CsvTime::GetSeconds([this] {
                                                     CsvColumn column;
                                                     column.title = titles_[0];
                                                     column.units = units_[0];
                                                     SplitUnits(column);
                                                     return column;
                                                 }()) > 0.0;
    if (!timely)
        time_.Fail();
    CsvRows::State state = CsvRows::End;
    const auto take = [&](std::int64_t column, const char* begin) { return TakeCell(rows, column, begin); };
    while (index_.rows_ < maxRows && (state = rows.Next(cells_, take)) == CsvRows::Row)
        ReadRow(rows);
    if (state == CsvRows::Failed)
        return false;
    EndRows(rows, state);
    SetColumns();
    SetTimeSeries();
    return true;
}

void CsvIndexPass::ReadHeader(CsvRows& rows)
{
    for (int row = 0; row < guess_.GetHeaderRows(); ++row) {
        std::vector<std::string>& texts = row == 0 ? titles_ : units_;
        const auto take = [&](std::int64_t column, const char* begin) -> const char* {
            CsvCell cell;
            const char* const stop = cells_.Scan(begin, rows.GetEnd(), cell);
            if (stop == rows.GetEnd() && !rows.IsFinal())
                return nullptr;
            if (column < static_cast<std::int64_t>(texts.size())) {
                std::string text;
                cell.AppendTo(text);
                texts[static_cast<std::size_t>(column)] = cell.quoted ? text : std::string(CsvTrim(text));
            }
            return stop;
        };
        if (rows.Next(cells_, take) != CsvRows::Row)
            return;
        otherEncoding_ = otherEncoding_ || CsvIsOtherThanUtf8(rows.GetText());
    }
}

const char* CsvIndexPass::TakeCell(const CsvRows& rows, std::int64_t column, const char* begin)
{
    CsvCell cell;
    const char* const stop = cells_.Scan(begin, rows.GetEnd(), cell);
    if (stop == rows.GetEnd() && !rows.IsFinal())
        return nullptr;
    // A zero byte: the row doesn't count.
    if (*stop == 0 && stop != rows.GetEnd())
        return stop;
    openQuote_ = cell.quoted && cell.end == stop;
    if (column >= static_cast<std::int64_t>(kinds_.size())) {
        longRow_ = longRow_ || values_.Classify(cell) != CsvKind::Empty;
        return stop;
    }
    std::uint32_t& kinds = kinds_[static_cast<std::size_t>(column)];
    const std::uint32_t kind = values_.Classify(cell);
    kinds |= kind;
    if ((kind & CsvKind::Text) != 0 && !otherEncoding_)
        otherEncoding_ = CsvIsOtherThanUtf8(cell.View());
    if (column == 0 && time_.MayBeEven())
        TakeTime(cell);
    return stop;
}

void CsvIndexPass::TakeTime(const CsvCell& cell)
{
    if (!values_.GetDouble(cell, rowTime_))
        time_.Fail();
}

void CsvIndexPass::ReadRow(CsvRows& rows)
{
    std::vector<CsvIndex::Place>& places = index_.places_;
    const std::int64_t offset = rows.GetOffset();
    if (places.empty() || offset - places.back().offset >= stride_)
        AddPlace({index_.rows_, offset});
    ++index_.rows_;
    if (time_.MayBeEven())
        time_.Add(rowTime_);
    leastWidth_ = std::min(leastWidth_, rows.GetCount());
    if (longRow_ && longRows_++ == 0)
        firstLongRow_ = index_.rows_;
    longRow_ = false;
    index_.ended_ = rows.GetText().ends_with('\n') || rows.GetText().ends_with('\r');
}

/// An index that grows too large lets every second place go.
void CsvIndexPass::AddPlace(CsvIndex::Place place)
{
    std::vector<CsvIndex::Place>& places = index_.places_;
    if (places.size() >= MaxPlaces) {
        for (std::size_t index = 1; index < MaxPlaces / 2; ++index)
            places[index] = places[index * 2];
        places.resize(MaxPlaces / 2);
        stride_ *= 2;
    }
    places.push_back(place);
}

void CsvIndexPass::Tell(const std::string& damage)
{
    index_.damage_ += (index_.damage_.empty() ? "" : " ") + damage;
}

void CsvIndexPass::EndRows(CsvRows& rows, CsvRows::State state)
{
    index_.end_ = rows.GetNextOffset();
    if (index_.places_.empty())
        index_.places_.push_back({0, index_.end_});
    if (state == CsvRows::NoText)
        Tell("From byte " + std::to_string(index_.end_) + " on, the file holds no text; what follows is left out.");
    if (state == CsvRows::TooLong)
        Tell("From byte " + std::to_string(index_.end_) + " on, no row ends; what follows is left out.");
    if (longRows_ > 0)
        Tell(std::to_string(longRows_) + " rows, the first of them row " + std::to_string(firstLongRow_) +
             ", have more cells than the table has columns; those are left out.");
    const auto columns = static_cast<std::int64_t>(kinds_.size());
    if (openQuote_)
        Tell("The quotes of the last cell are never closed.");
    else if (!index_.ended_ && index_.rows_ > 1 && rows.GetCount() < columns)
        Tell("The last row is cut off.");
}

void CsvIndexPass::SplitUnits(CsvColumn& column) const
{
    const std::size_t bracket = column.title.rfind('[');
    if (guess_.dialect.units != CsvDialect::UnitsInBrackets || bracket == std::string::npos || !column.title.ends_with(']'))
        return;
    column.units = column.title.substr(bracket + 1, column.title.size() - bracket - 2);
    column.title = std::string(CsvTrim(std::string_view(column.title).substr(0, bracket)));
}

void CsvIndexPass::SetColumns()
{
    CsvDialect& dialect = index_.dialect_;
    if (otherEncoding_ && dialect.encoding != CsvDialect::Utf8WithMark)
        dialect.encoding = CsvDialect::Windows1252;
    dialect.comment = CsvDecode(dialect.comment, dialect.encoding);
    index_.columns_.resize(kinds_.size());
    for (std::size_t index = 0; index < kinds_.size(); ++index) {
        CsvColumn& column = index_.columns_[index];
        const std::uint32_t kinds = kinds_[index];
        column.title = CsvDecode(titles_[index], dialect.encoding);
        column.units = CsvDecode(units_[index], dialect.encoding);
        SplitUnits(column);
        column.type = TypeOf(kinds);
        column.hasInvalid = (kinds & CsvKind::Empty) != 0 || static_cast<std::int64_t>(index) >= leastWidth_ ||
                            (column.type != DaxColumnType::Text && (kinds & CsvKind::QuotedEmpty) != 0);
        column.wide = column.type == DaxColumnType::Huge && (kinds & CsvKind::Wide) != 0;
    }
}

/// Other columns of numbers are there, and each of their values has its place in a double.
void CsvIndexPass::SetTimeSeries()
{
    const auto& columns = index_.columns_;
    const auto isChannel = [](const CsvColumn& column) { return column.IsNumeric(); };
    const auto isWide = [](const CsvColumn& column) { return column.wide; };
    if (!time_.IsEven() || !columns[0].IsNumeric() || columns[0].hasInvalid ||
        std::none_of(columns.begin() + 1, columns.end(), isChannel) || std::any_of(columns.begin(), columns.end(), isWide))
        return;
    const double seconds = CsvTime::GetSeconds(columns[0]);
    // Division keeps 1000 / 0.1 the whole number that it is.
    index_.rate_ = seconds < 1.0 ? time_.GetRate() * std::round(1.0 / seconds) : time_.GetRate() / seconds;
    index_.firstTime_ = seconds < 1.0 ? time_.GetFirst() / std::round(1.0 / seconds) : time_.GetFirst() * seconds;
}
