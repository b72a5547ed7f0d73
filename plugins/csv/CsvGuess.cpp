#include "CsvGuess.h"

#include "CsvSample.h"
#include "CsvValue.h"

#include <algorithm>

namespace {

constexpr std::string_view Mark = "\xef\xbb\xbf";

/// Lines that begin with one of these are remarks, and so are rows of text in one piece where the table has columns.
constexpr std::string_view RemarkSigns[] = {"#", "%", "!", "//"};

bool IsRemark(std::string_view line)
{
    return std::any_of(std::begin(RemarkSigns), std::end(RemarkSigns),
                       [&](std::string_view sign) { return line.starts_with(sign); });
}

std::string_view TakeLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    if (text.starts_with("\r\n"))
        text.remove_prefix(1);
    text.remove_prefix(!text.empty());
    return line;
}

/// Takes remarks and blank lines off the front of a text.
void TakeRemarks(std::string_view& text, std::string& comment)
{
    for (std::string_view rest = text; !rest.empty(); text = rest) {
        std::string_view line = CsvTrim(TakeLine(rest));
        const bool namesSeparator = line.size() == 5 && line.starts_with("sep=");
        if (namesSeparator)
            line = {};
        else if (!line.empty() && !IsRemark(line))
            return;
        for (const std::string_view sign : RemarkSigns)
            if (line.starts_with(sign)) {
                line = CsvTrim(line.substr(sign.size()));
                break;
            }
        if (!line.empty())
            comment.append(comment.empty() ? "" : "\n").append(line);
    }
}

std::string FindLineEnd(std::string_view text)
{
    const std::size_t at = text.find_first_of("\r\n");
    if (at == text.npos || text[at] == '\n')
        return "\n";
    return text.substr(at).starts_with("\r\n") ? "\r\n" : "\r";
}

/// Free text in front of the table: rows of one cell that is no number.
void TakePreamble(const CsvSample& sample, std::string_view& text, std::string& comment)
{
    for (std::size_t row = 0; row < sample.GetNumRows() && sample.GetColumns() > 1; ++row) {
        if (sample.GetWidth(row) != 1 || (sample.GetKinds(row, 0) & CsvKind::Text) == 0)
            return;
        comment.append(comment.empty() ? "" : "\n").append(CsvTrim(sample.GetText(row, 0)));
        text = sample.GetTextBehind(row);
    }
}

/// Tries each separator and decimal sign, and takes what makes the most regular table with the most numbers.
CsvDialect ChooseSigns(std::string_view text, bool final, const CsvSettings& settings, CsvDialect dialect)
{
    constexpr std::pair<char, char> pairs[] = {{'\t', '.'}, {'\t', ','}, {';', '.'}, {';', ','},
                                               {',', '.'},  {' ', '.'},  {' ', ','}};
    double best = -1.0;
    CsvDialect chosen = dialect;
    for (const auto& [separator, decimal] : pairs) {
        dialect.separator = separator;
        dialect.decimal = decimal;
        CsvDialect wished = dialect;
        settings.ApplyTo(wished);
        if (wished.separator != separator || wished.decimal != decimal)
            continue;
        const CsvSample sample(dialect, text, final);
        // One column is what any text is when the separator isn't in it.
        const double score =
            sample.GetColumns() > 1 ? sample.GetRegularShare() + sample.GetNumericShare(1) : 0.5 * sample.GetNumericShare(1);
        if (score > best + 1e-9) {
            best = score;
            chosen = dialect;
        }
    }
    if (best < 0.0)
        settings.ApplyTo(chosen);
    return chosen;
}

bool HasBrackets(const CsvSample& sample)
{
    for (std::size_t column = 0; column < sample.GetWidth(0); ++column) {
        const std::string_view title = CsvTrim(sample.GetText(0, column));
        if (title.ends_with(']') && title.find('[') != title.npos)
            return true;
    }
    return false;
}

}  // namespace

bool CsvGuess::MayBeTable(const char* bytes, std::int64_t size)
{
    const std::string_view text(bytes, static_cast<std::size_t>(size));
    const std::string_view begun = text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    // Universal files begin with a line "-1", Famos files with a key.
    if (begun.starts_with("|CF") || CsvTrim(begun.substr(0, begun.find_first_of("\r\n"))) == "-1")
        return false;
    return std::none_of(text.begin(), text.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return (code < 32 && code != '\t' && code != '\n' && code != '\r') || code == 127;
    });
}

bool CsvGuess::Make(VDIo& io, std::int64_t size, const CsvSettings& settings)
{
    // A table of very many columns needs more than a block to show some rows.
    constexpr std::int64_t blocks[] = {1 << 16, 1 << 20, 1 << 24};
    constexpr std::ptrdiff_t enoughLines = 12;
    std::string bytes;
    for (const std::int64_t block : blocks) {
        bytes.resize(static_cast<std::size_t>(std::min(block, size)));
        std::int64_t got = 0;
        if (!io.Read(0, static_cast<std::int64_t>(bytes.size()), bytes.data(), &got))
            return false;
        bytes.resize(static_cast<std::size_t>(got));
        if (got < block || std::count(bytes.begin(), bytes.end(), '\n') >= enoughLines ||
            std::count(bytes.begin(), bytes.end(), '\r') >= enoughLines)
            break;
    }
    const bool final = static_cast<std::int64_t>(bytes.size()) >= size;
    std::string_view text(bytes);
    *this = {};
    if (text.starts_with(Mark)) {
        dialect.encoding = CsvDialect::Utf8WithMark;
        text.remove_prefix(Mark.size());
    }
    dialect.lineEnd = FindLineEnd(text);
    TakeRemarks(text, dialect.comment);
    CsvDialect signs = ChooseSigns(text, final, settings, dialect);
    TakePreamble(CsvSample(signs, text, final), text, signs.comment);
    const CsvSample sample(signs, text, final);
    dialect = signs;
    dialect.quotedNumbers = sample.IsAllQuoted();
    dialect.header = sample.HasHeader();
    CsvDialect wished = dialect;
    settings.ApplyTo(wished);
    if (wished.header && sample.HasUnits())
        dialect.units = CsvDialect::UnitsLine;
    else if (wished.header && HasBrackets(sample))
        dialect.units = CsvDialect::UnitsInBrackets;
    const std::string found = dialect.comment;
    settings.ApplyTo(dialect);
    dialect.comment = found;
    tableOffset = static_cast<std::int64_t>(text.data() - bytes.data());
    columns = static_cast<std::int64_t>(std::max(sample.GetColumns(), dialect.header ? sample.GetTitledWidth() : 0));
    regular = sample.GetRegularShare();
    numeric = sample.GetNumericShare(static_cast<std::size_t>(GetHeaderRows()));
    rows = static_cast<std::int64_t>(sample.GetNumRows());
    return rows > 0 && columns > 0;
}

bool CsvGuess::IsTable(bool named) const
{
    constexpr std::int64_t enoughRows = 3;
    if (!named)
        return columns > 1 && rows - GetHeaderRows() >= enoughRows && regular >= 0.95 && numeric >= 0.6;
    if (columns == 1)
        return rows > GetHeaderRows() && numeric >= 0.9;
    if (dialect.separator == ' ' && numeric < 0.6)
        return false;
    return regular >= 0.9 || (regular >= 0.6 && numeric >= 0.6);
}
