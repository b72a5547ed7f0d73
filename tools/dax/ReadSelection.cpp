#include "ReadSelection.h"

#include "ToolError.h"

#include <charconv>

namespace {

constexpr std::int64_t VVMaxPoint = std::numeric_limits<std::int64_t>::max() / 2;

/// Reads a number that the text begins with; the end of it, or null if there is none.
template <class Number>
const char* VFReadStart(const char* at, const char* end, Number* number)
{
    const auto [behind, error] = std::from_chars(at, end, *number);
    return error == std::errc() ? behind : nullptr;
}

}  // namespace

template <class Number>
VDNumberRange<Number> VDNumberRange<Number>::Read(const std::string& option, const std::string& text)
{
    VDNumberRange range;
    const char* at = text.data();
    const char* const end = at + text.size();
    if (at != end && *at != '-')
        at = VFReadStart(at, end, &range.first);
    if (at != nullptr && at == end)
        range.last = range.first;
    else if (at != nullptr && *at == '-' && at + 1 != end)
        at = VFReadStart(at + 1, end, &range.last);
    else if (at != nullptr && *at == '-' && at != text.data())
        ++at;
    else
        at = nullptr;
    if (text.empty() || at != end || !(range.first <= range.last))
        VFFail(DaxToolError::Usage, option + ": '" + text + "' is no number and no range such as 10-20, 10- or -20", "dax");
    return range;
}

template struct VDNumberRange<std::int64_t>;
template struct VDNumberRange<double>;

std::int64_t VDPointRange::Last(const VDChannel& channel) const
{
    if (count < 0 || count > channel.points - first)
        return channel.points;
    return first + count - 1;
}

void VDReadSelection::Register(CLI::App& command)
{
    const auto ofKind = [&](CLI::Option* option, int accessType) {
        kindOptions_.push_back({option, accessType});
        return option;
    };
    channels.Register(command);
    ofKind(command.add_option("--first", points.first, "Time series: first point, from 1 (default: 1)"),
           VTFileAccessTimeSeries)
        ->check(CLI::Range(std::int64_t{1}, VVMaxPoint).description(""))
        ->type_name("P");
    ofKind(command.add_option("--count", points.count, "Time series: number of points (default: up to the end)"),
           VTFileAccessTimeSeries)
        ->check(CLI::Range(std::int64_t{0}, VVMaxPoint).description(""))
        ->type_name("C");
    ofKind(command.add_option("--set", dataSet, "Tables: the data set of this position, from 1 (default: all)"),
           VTFileAccessMultiColumn)
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
        ->type_name("N");
    ofKind(command.add_option("--col", columns, "Tables: a column by title, keyword or position from 1; may be repeated"),
           VTFileAccessMultiColumn)
        ->allow_extra_args(false)
        ->type_name("COLUMN");
    ofKind(command.add_option("--rows", rows, "Tables: rows, from 1 (default: all)"), VTFileAccessMultiColumn)
        ->type_name("FROM-TO");
    ofKind(command.add_option("--spectrum", spectra, "Spectra: positions, from 1 (default: all)"),
           VTFileAccessComplexFrequency)
        ->type_name("FROM-TO");
    ofKind(
        command.add_option("--lines", lines,
                           "Spectra: lines by their frequency, or by position from 1 where the file has no axis (default: "
                           "all)"),
        VTFileAccessComplexFrequency)
        ->type_name("FROM-TO");
}

void VDReadSelection::CheckFits(int accessType) const
{
    for (const KindOption& each : kindOptions_)
        if (each.option->count() > 0 && each.accessType != accessType)
            VFFail(DaxToolError::Usage, each.option->get_name() + " means nothing for this kind of data", "dax");
}
