#include "UffIndex.h"

#include <algorithm>

namespace {

constexpr std::size_t MostDamage = 5;
/// Lines between places that are kept of text data.
constexpr std::int64_t LinesBetweenMarks = 256;
constexpr int Ieee = 2;
constexpr int BigEndian = 2;

long long Field(std::string_view line, std::size_t at, std::size_t width)
{
    long long value = 0;
    if (at < line.size())
        UffReadField(line.substr(at, width), &value);
    return value;
}

bool IsBlank(std::string_view text)
{
    return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

}  // namespace

bool UffIndex::IsMark(std::string_view line)
{
    return line.starts_with("    -1") && IsBlank(line.substr(6));
}

bool UffIndex::Read(VDIo& io)
{
    io_ = &io;
    fileSize_ = io.GetFileSize();
    if (fileSize_ < 0)
        return false;
    UffLines lines(io);
    bool isBehindMark = false;
    for (std::string_view line; lines.Next(&line);) {
        const bool isHead = isBehindMark && Field(line, 0, 6) > 0;
        isBehindMark = IsMark(line);
        // The mark behind a dataset stands for the one in front of the next where that is missing.
        if (isHead && !isBehindMark)
            isBehindMark = ReadDataset(lines, std::string(line));
    }
    return !lines.HasFailed();
}

void UffIndex::Complain(const UffDataset& dataset, const std::string& problem)
{
    if (damage_.size() < MostDamage)
        damage_.push_back("Dataset " + std::to_string(dataset.number) + " " + problem);
    else
        ++moreDamage_;
}

/// @return whether a mark ended it
bool UffIndex::ReadDataset(UffLines& lines, std::string_view head)
{
    const auto type = static_cast<int>(Field(head, 0, 6));
    const bool isBinary = head.size() > 6 && (head[6] == 'b' || head[6] == 'B');
    if (type != 58) {
        PassOver(std::to_string(type));
        if (isBinary) {
            std::string_view line;
            for (long long i = Field(head, 19, 12); i > 0 && lines.Next(&line) && !IsMark(line); --i) {
            }
            const long long bytes = Field(head, 31, 12);
            if (bytes > 0 && bytes <= fileSize_ - lines.GetPlace())
                lines.Seek(lines.GetPlace() + bytes);
        }
        return SkipToMark(lines);
    }
    UffDataset dataset;
    dataset.number = ++functions_;
    dataset.isText = !isBinary;
    const std::int64_t start = lines.GetPlace();
    std::string problem;
    if (!ReadHeader(lines, dataset, &problem)) {
        PassOver("58");
        Complain(dataset, problem);
        lines.Seek(start);
        return SkipToMark(lines);
    }
    if (isBinary)
        return FindBinaryData(lines, head, dataset);
    return FindText(lines, *io_, dataset);
}

bool UffIndex::ReadHeader(UffLines& lines, UffDataset& dataset, std::string* problem)
{
    std::array<std::string, UffHeader::Lines> header;
    std::string_view line;
    for (std::string& text : header) {
        if (!lines.Next(&line)) {
            *problem = "ends within its header";
            return false;
        }
        text = line.substr(0, 400);
    }
    return dataset.header.Read(header, problem);
}

bool UffIndex::SkipToMark(UffLines& lines)
{
    std::string_view line;
    while (lines.Next(&line))
        if (IsMark(line))
            return true;
    return false;
}

/// Binary data are as long as the head says, or as the header makes them, whichever has a mark behind it.
bool UffIndex::FindBinaryData(UffLines& lines, std::string_view head, UffDataset& dataset)
{
    const UffHeader& header = dataset.header;
    std::string_view line;
    for (long long more = Field(head, 19, 12) - UffHeader::Lines; more > 0 && lines.Next(&line); --more) {
    }
    const std::int64_t bytes = std::max<std::int64_t>(Field(head, 31, 12), 0);
    dataset.isBigEndian = Field(head, 7, 6) == BigEndian;
    dataset.offset = lines.GetPlace();
    const std::int64_t room = fileSize_ - dataset.offset;
    // An abscissa is a single number in files of some writers, and as precise as the values in those of others.
    dataset.abscissaBytes = 4;
    if (header.IsDouble() && (header.count == 0 || bytes / header.count != dataset.GetPointBytes()))
        dataset.abscissaBytes = 8;
    const std::int64_t points = std::min<std::int64_t>(header.count, room / dataset.GetPointBytes());
    const std::int64_t expected = points * dataset.GetPointBytes();
    const auto endsAt = [&](std::int64_t size) {
        if (size > room)
            return false;
        lines.Seek(dataset.offset + size);
        // Some writers end the data with a line end of their own, which is not counted.
        if (!lines.Next(&line))
            return false;
        return IsMark(line) || (IsBlank(line) && lines.Next(&line) && IsMark(line));
    };
    dataset.points = points;
    dataset.isEnded = (bytes >= expected && endsAt(bytes)) || endsAt(expected);
    if (!dataset.isEnded) {
        lines.Seek(dataset.offset);
        dataset.isEnded = FindMark(lines, dataset);
    }
    dataset.end = dataset.offset + dataset.points * dataset.GetPointBytes();
    if (Field(head, 13, 6) != Ieee && Field(head, 13, 6) != 0) {
        PassOver("58b");
        Complain(dataset, "has numbers of another format than IEEE 754");
    } else {
        ComplainOfEnd(dataset);
        datasets_.push_back(dataset);
    }
    return dataset.isEnded;
}

/// The mark behind data of a length that nobody told rightly, which may follow them at once.
bool UffIndex::FindMark(UffLines& lines, UffDataset& dataset)
{
    std::string_view line;
    while (lines.Next(&line)) {
        const std::string_view text = line.substr(0, line.find_last_not_of(" \t") + 1);
        if (!text.ends_with("    -1"))
            continue;
        const std::int64_t end = lines.GetLineStart() + static_cast<std::int64_t>(text.size()) - 6;
        dataset.points = std::min(dataset.points, (end - dataset.offset) / dataset.GetPointBytes());
        return true;
    }
    return false;
}

void UffIndex::ComplainOfEnd(const UffDataset& dataset)
{
    const UffHeader& header = dataset.header;
    if (dataset.points < header.count || !dataset.isEnded)
        Complain(dataset, "announces " + std::to_string(header.count) + " values and holds " +
                              std::to_string(dataset.points) + (dataset.isEnded ? "" : ", without the mark at its end"));
}

bool UffIndex::FindText(UffLines& lines, VDIo& io, UffDataset& dataset)
{
    const UffHeader& header = dataset.header;
    dataset.offset = lines.GetPlace();
    dataset.end = dataset.offset;
    const std::int64_t perLine = header.GetColumns().GetCount();
    std::int64_t count = 0;
    std::int64_t lastLine = dataset.offset;
    std::string_view line;
    while (lines.Next(&line)) {
        dataset.isEnded = IsMark(line);
        if (dataset.isEnded)
            break;
        if (count % LinesBetweenMarks == 0)
            dataset.marks.push_back({count * perLine, lines.GetLineStart()});
        ++count;
        lastLine = lines.GetLineStart();
        dataset.end = lines.GetPlace();
    }
    if (lines.HasFailed())
        return false;
    dataset.points = header.count;
    const std::int64_t behind = lines.GetPlace();
    const std::int64_t parts = header.GetParts();
    const bool isAsAnnounced =
        header.count <= INT64_MAX / parts / 2 && (header.count * parts + perLine - 1) / perLine == count;
    bool isWhole = isAsAnnounced && dataset.isEnded;
    if (isWhole && count > 0) {
        // The lines before are full, or it comes to light when they are read.
        std::vector<double> values;
        const auto expected = header.count * parts - (count - 1) * perLine;
        lines.Seek(lastLine);
        isWhole = lines.Next(&line) && UffReadLine(line, header.GetColumns(), static_cast<int>(expected), &values) &&
                  static_cast<std::int64_t>(values.size()) == expected;
        lines.Seek(behind);
    }
    if (!isWhole && !CountValues(io, dataset))
        return false;
    ComplainOfEnd(dataset);
    const bool isEnded = dataset.isEnded;
    datasets_.push_back(std::move(dataset));
    return isEnded;
}

bool UffIndex::CountValues(VDIo& io, UffDataset& dataset)
{
    const UffColumns columns = dataset.header.GetColumns();
    const std::int64_t parts = dataset.header.GetParts();
    UffLines lines(io, dataset.offset, dataset.end);
    std::vector<double> values;
    std::int64_t found = 0;
    std::int64_t count = 0;
    dataset.isRegular = false;
    dataset.marks.clear();
    for (std::string_view line; lines.Next(&line); ++count) {
        if (count % LinesBetweenMarks == 0)
            dataset.marks.push_back({found, lines.GetLineStart()});
        if (!lines.IsWhole() && !dataset.isEnded) {
            // A number that was cut off looks like another one.
            line = columns.DropCutField(line);
            dataset.end = lines.GetLineStart() + static_cast<std::int64_t>(line.size());
        }
        values.clear();
        if (!UffReadLine(line, columns, 0, &values)) {
            dataset.end = lines.GetLineStart();
            break;
        }
        found += static_cast<std::int64_t>(values.size());
    }
    dataset.points = std::min<std::int64_t>(dataset.header.count, found / parts);
    return !lines.HasFailed();
}

std::string UffIndex::GetPassedOver() const
{
    std::string text;
    for (const auto& [type, count] : passedOver_)
        text += (text.empty() ? "" : ", ") + type + " (" + std::to_string(count) + ")";
    return text;
}

std::string UffIndex::GetDamage() const
{
    std::string text;
    for (const std::string& problem : damage_)
        text += (text.empty() ? "" : " ") + problem + ".";
    if (moreDamage_ > 0)
        text += " And so do " + std::to_string(moreDamage_) + " more.";
    return text;
}
