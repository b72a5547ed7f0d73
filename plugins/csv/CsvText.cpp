#include "CsvText.h"

#include "CsvEncoding.h"

#include <bit>

CsvText::CsvText(const CsvDialect& dialect, const std::vector<CsvColumn>& columns)
    : dialect_(dialect), columns_(columns), cells_(dialect), values_(dialect)
{
}

bool CsvText::AppendHeader(std::string& text) const
{
    if (dialect_.encoding == CsvDialect::Utf8WithMark)
        text += "\xef\xbb\xbf";
    std::string comment;
    if (!CsvEncode(dialect_.comment, dialect_.encoding, comment))
        return false;
    for (std::size_t begin = 0; begin < comment.size();) {
        const std::size_t end = std::min(comment.find_first_of("\r\n", begin), comment.size());
        if (end > begin)
            text.append("# ").append(comment, begin, end - begin).append(dialect_.lineEnd);
        begin = end + 1;
    }
    return !dialect_.header || AppendTitles(text);
}

bool CsvText::AppendTitles(std::string& text) const
{
    std::string cell;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        std::string title = columns_[column].title;
        // A column without a title would make the header look like none.
        if (title.empty())
            title = "Column " + std::to_string(column + 1);
        if (dialect_.units == CsvDialect::UnitsInBrackets && (!columns_[column].units.empty() || title.ends_with(']')))
            title += " [" + columns_[column].units + "]";
        if (!CsvEncode(title, dialect_.encoding, cell))
            return false;
        AppendCell(column, cell, text);
        EndCell(column, text);
    }
    for (std::size_t column = 0; column < columns_.size() && dialect_.units == CsvDialect::UnitsLine; ++column) {
        if (!CsvEncode(columns_[column].units, dialect_.encoding, cell))
            return false;
        if (!cell.empty())
            AppendCell(column, cell, text);
        else
            AppendEmpty(DaxColumnType::Double, text);
        EndCell(column, text);
    }
    return true;
}

void CsvText::EndCell(std::size_t column, std::string& text) const
{
    if (column + 1 < columns_.size())
        text += dialect_.separator;
    else
        text += dialect_.lineEnd;
}

/// In quotes where the reader would otherwise take it for something else than this text.
void CsvText::AppendCell(std::size_t column, std::string_view cell, std::string& text) const
{
    // A text at the beginning of a line could be taken for a remark, or for another format's signature.
    constexpr std::string_view signatures = "#%!/|";
    const bool special = column == 0 && !cell.empty() && signatures.find(cell.front()) != signatures.npos;
    CsvCell read;
    const std::string copy(cell);
    const char* const end = copy.data() + copy.size();
    const bool whole = !special && !copy.empty() && cells_.Scan(copy.data(), end, read) == end && !read.quoted;
    if (whole && CsvTrim(cell).size() == cell.size() && values_.Classify(read) == CsvKind::Text) {
        text += cell;
        return;
    }
    text += '"';
    for (const char character : cell) {
        text += character;
        if (character == '"')
            text += '"';
    }
    text += '"';
}

/// False where no cell means that there is no value: between blanks, and alone in its line.
bool CsvText::AppendEmpty(int type, std::string& text) const
{
    if (dialect_.separator != ' ' && columns_.size() > 1)
        return true;
    text += "\"\"";
    return type != DaxColumnType::Text;
}

void CsvText::AppendDouble(double value, bool isFloat, std::string& text) const
{
    char digits[32];
    const auto narrow = static_cast<float>(value);
    const bool fits = isFloat && (static_cast<double>(narrow) == value || value != value);
    char* const end =
        fits ? std::to_chars(digits, std::end(digits), narrow).ptr : std::to_chars(digits, std::end(digits), value).ptr;
    const std::string_view written(digits, static_cast<std::size_t>(end - digits));
    // Without it, a column of whole doubles would be read as one of whole numbers.
    const bool whole = written.find_first_not_of("-0123456789") == written.npos;
    text += written;
    if (whole)
        text += ".0";
    if (dialect_.decimal != '.')
        if (const std::size_t point = text.find('.', text.size() - written.size() - (whole ? 2 : 0)); point != text.npos)
            text[point] = dialect_.decimal;
}

bool CsvText::AppendValue(const CsvSpool& spool, std::size_t column, std::uint64_t slot, std::string& text) const
{
    const int type = columns_[column].type;
    if (type == DaxColumnType::Double || type == DaxColumnType::Float)
        AppendDouble(std::bit_cast<double>(slot), type == DaxColumnType::Float, text);
    else if (DaxColumnType::IsNumeric(type))
        text += std::to_string(static_cast<std::int64_t>(slot));
    else {
        std::string cell;
        if (!spool.GetText(slot, cell))
            return false;
        if (type != DaxColumnType::DateTime || !CsvIsDateTime(cell) || cell.find(dialect_.separator) != cell.npos)
            AppendCell(column, cell, text);
        else
            text += cell;
    }
    return true;
}

bool CsvText::AppendRows(const CsvSpool& spool, std::int64_t first, std::int64_t count, std::string& text,
                         std::string& unfit) const
{
    std::vector<CsvSpool::Cells> cells(columns_.size());
    unfit.clear();
    for (std::size_t column = 0; column < columns_.size(); ++column)
        if (!spool.Get(column, first, count, cells[column]))
            return false;
    for (std::size_t row = 0; row < static_cast<std::size_t>(count); ++row)
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (!cells[column].IsValid(row)) {
                if (!AppendEmpty(columns_[column].type, text)) {
                    unfit = CsvSettings::GetName(CsvSettings::Separator);
                    return false;
                }
            } else if (!AppendValue(spool, column, cells[column].slots[row], text))
                return false;
            EndCell(column, text);
        }
    return true;
}
