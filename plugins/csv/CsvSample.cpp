#include "CsvSample.h"

#include "CsvValue.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

constexpr std::size_t MaxRows = 200;
/// Two rows of the most columns that a table has.
constexpr std::size_t MaxCells = std::size_t(1) << 21;
constexpr std::uint32_t Empties = CsvKind::Empty | CsvKind::QuotedEmpty;

}  // namespace

CsvSample::CsvSample(const CsvDialect& dialect, std::string_view text, bool final) : text_(text)
{
    const CsvCells cells(dialect);
    const char* at = text.data();
    const char* const end = at + text.size();
    CsvDialect plain = dialect;
    plain.quotedNumbers = true;
    const CsvValue values(plain);
    const auto take = [&](std::int64_t, const char* begin) -> const char* {
        CsvCell cell;
        const char* const stop = cells.Scan(begin, end, cell);
        if ((stop == end && !final) || cells_.size() == MaxCells)
            return nullptr;
        cells_.push_back(cell);
        kinds_.push_back(values.Classify(cell));
        return stop;
    };
    while (at != end && rows_.size() < MaxRows) {
        const std::size_t first = cells_.size();
        std::int64_t count = 0;
        const auto state = cells.ScanRow(at, end, final, take, count);
        if (state == CsvCells::Blank)
            continue;
        if (state != CsvCells::Complete) {
            cells_.resize(first);
            kinds_.resize(first);
            break;
        }
        rows_.push_back({first, static_cast<std::size_t>(count), static_cast<std::size_t>(at - text.data())});
    }
    allQuoted_ =
        std::all_of(cells_.begin(), cells_.end(), [](const CsvCell& cell) { return cell.quoted || cell.begin == cell.end; });
    FindColumns();
}

/// The header may have another width, so what stands below it decides.
void CsvSample::FindColumns()
{
    std::map<std::size_t, std::size_t> widths;
    for (std::size_t row = 0; row < rows_.size(); ++row)
        widths[GetWidth(row)] += row == 0 ? 1 : 2;
    std::size_t most = 0;
    for (const auto& [width, count] : widths)
        if (count >= most) {
            most = count;
            columns_ = width;
        }
    // A separator at the end of each line makes no column.
    const auto isEmpty = [this](const Row& row) {
        return row.width < columns_ || (row.width == columns_ && kinds_[row.first + columns_ - 1] == CsvKind::Empty);
    };
    if (columns_ > 1 && rows_.size() > 1 && std::all_of(rows_.begin(), rows_.end(), isEmpty))
        --columns_;
}

std::size_t CsvSample::GetTitledWidth() const
{
    std::size_t width = rows_.empty() ? 0 : rows_[0].width;
    while (width > 0 && (GetKinds(0, width - 1) & CsvKind::Empty) != 0)
        --width;
    return width;
}

double CsvSample::GetRegularShare() const
{
    std::size_t regular = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        bool fits = GetWidth(row) + 1 >= columns_ && GetWidth(row) <= columns_ + 1;
        // A separator too many or too few at the end of a line is nothing unusual.
        if (fits && GetWidth(row) > columns_)
            fits = (GetKinds(row, columns_) & CsvKind::Empty) != 0;
        else if (fits && GetWidth(row) < columns_)
            fits = row == 0 && columns_ > 2;
        regular += fits;
    }
    return rows_.empty() ? 0.0 : static_cast<double>(regular) / static_cast<double>(rows_.size());
}

double CsvSample::GetNumericShare(std::size_t firstRow) const
{
    std::size_t numeric = 0;
    std::size_t all = 0;
    for (std::size_t row = firstRow < rows_.size() ? firstRow : 0; row < rows_.size(); ++row)
        for (std::size_t column = 0; column < GetWidth(row); ++column, ++all)
            numeric += !IsText(row, column);
    return all == 0 ? 0.0 : static_cast<double>(numeric) / static_cast<double>(all);
}

bool CsvSample::IsText(std::size_t row, std::size_t column) const
{
    const std::uint32_t kinds = GetKinds(row, column);
    return (kinds & CsvKind::Text) != 0 ||
           ((kinds & Empties) == 0 && cells_[rows_[row].first + column].quoted && !allQuoted_);
}

bool CsvSample::StandsOverNumbers(std::size_t row) const
{
    std::size_t over = 0;
    std::size_t numeric = 0;
    for (std::size_t column = 0; column < columns_; ++column) {
        // The column's first cell below the titles that isn't empty.
        std::size_t below = 2;
        while (below < rows_.size() && (column >= GetWidth(below) || (GetKinds(below, column) & Empties) != 0))
            ++below;
        // With no more than two rows, the second one is data.
        if (rows_.size() == 2 && row == 0 && column < GetWidth(1))
            below = 1;
        if (below >= rows_.size() || IsText(below, column))
            continue;
        ++numeric;
        over += column < GetWidth(row) && IsText(row, column);
    }
    return over > 0 && over * 2 >= numeric;
}

bool CsvSample::HasHeader() const
{
    if (rows_.empty())
        return false;
    if (StandsOverNumbers(0))
        return true;
    std::set<std::string_view> titles;
    for (std::size_t row = 0; row < std::min<std::size_t>(rows_.size(), 20); ++row)
        for (std::size_t column = 0; column < GetWidth(row); ++column) {
            if (!IsText(row, column) && (row == 0 || (GetKinds(row, column) & Empties) == 0))
                return false;
            if (row == 0 && !titles.insert(CsvTrim(GetText(0, column))).second)
                return false;
        }
    return true;
}

bool CsvSample::HasUnits() const
{
    constexpr std::size_t longest = 24;
    if (rows_.size() < 2 || GetWidth(1) > columns_ + 1)
        return false;
    for (std::size_t column = 0; column < GetWidth(1); ++column)
        if ((!IsText(1, column) && (GetKinds(1, column) & Empties) == 0) || GetText(1, column).size() > longest)
            return false;
    return rows_.size() > 2 && StandsOverNumbers(1);
}
