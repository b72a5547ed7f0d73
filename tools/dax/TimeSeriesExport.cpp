#include "Interrupt.h"
#include "Printable.h"
#include "TestExport.h"
#include "TimeSeriesTest.h"
#include "ToolError.h"
#include "Values.h"

#include <algorithm>
#include <bit>
#include <map>

namespace {

/// Memory for the blocks of all columns together.
constexpr std::int64_t VVBlockMemory = std::int64_t{16} << 20;

std::string VFColumnTitle(const VDChannel& channel)
{
    return VFWithUnits(channel.title.empty() ? "Channel " + std::to_string(channel.number) : channel.title, channel.units);
}

void VFWriteJsonValues(const VDTimeSeriesTest& test, const VDChannel& channel, const VDPointRange& range, VDTextSink& out)
{
    VDValues values(VFValueForm(channel.type), test.GetBlockSize());
    const std::int64_t last = range.Last(channel);
    for (std::int64_t point = range.first; point <= last;) {
        const std::int64_t read =
            values.Read(test.Get(), channel.index, point, std::min(test.GetBlockSize(), last - point + 1));
        if (read < 1)
            VFFail(DaxToolError::Incomplete, "The file ends before the points that it states", "VFWriteJson");
        for (std::int64_t index = 0; index < read; ++index) {
            char* at = out.Reserve(NumberTextSize + 1);
            if (point + index > range.first)
                *at++ = ',';
            out.Commit(values.PutJson(at, index));
        }
        point += read;
    }
}

/// Channels that have the same sample rate and base time, so that one time column serves all of them.
using VDChannelGroup = std::vector<VDChannel>;

std::vector<VDChannelGroup> VFGroupByTime(const std::vector<VDChannel>& channels)
{
    std::vector<VDChannelGroup> groups;
    std::map<std::pair<std::uint64_t, std::uint64_t>, std::size_t> known;  // by bits, which order whatever a file states
    for (const VDChannel& channel : channels) {
        const std::pair times(std::bit_cast<std::uint64_t>(channel.sampleRate + 0.0),
                              std::bit_cast<std::uint64_t>(channel.baseTime + 0.0));
        const auto [group, isNew] = known.try_emplace(times, groups.size());
        if (isNew)
            groups.emplace_back();
        groups[group->second].push_back(channel);
    }
    return groups;
}

/// Writes a group as CSV: a header line, then a row for each point with its time and the value of each channel; a cell is
/// empty where a channel has ended. Values have the fewest digits that read back the same.
std::int64_t VFWriteCsv(const VDTimeSeriesTest& test, const VDChannelGroup& channels, const VDPointRange& range,
                        VDTextSink& out)
{
    out.Write(VFCsvText(VFWithUnits("time", test.GetXUnits())));
    for (const VDChannel& channel : channels)
        out.Write("," + VFCsvText(VFColumnTitle(channel)));
    out.Write("\n");

    const auto columns = static_cast<std::int64_t>(channels.size());
    const std::int64_t block =
        std::clamp<std::int64_t>(VVBlockMemory / (columns * std::int64_t{sizeof(double)}), 1, test.GetBlockSize());
    std::vector<VDValues> values;
    std::int64_t last = 0;
    for (const VDChannel& channel : channels) {
        values.emplace_back(VFValueForm(channel.type), block);
        last = std::max(last, range.Last(channel));
    }
    const double rate = channels.front().sampleRate;
    const double base = channels.front().baseTime;
    for (std::int64_t first = range.first; first <= last; first += block) {
        VDInterruptGuard::Check();
        for (std::size_t column = 0; column < channels.size(); ++column) {
            const std::int64_t wanted = std::clamp<std::int64_t>(range.Last(channels[column]) - first + 1, 0, block);
            if (values[column].Read(test.Get(), channels[column].index, first, wanted) != wanted)
                VFFail(DaxToolError::Incomplete, "The file ends before the points that it states", "VFWriteCsv");
        }
        const std::int64_t rows = std::min(block, last - first + 1);
        for (std::int64_t row = 0; row < rows; ++row) {
            char* at = out.Reserve(NumberTextSize);
            out.Commit(VFPutNumber(at, static_cast<double>(first + row - 1) / rate + base));
            for (const VDValues& column : values) {
                at = out.Reserve(NumberTextSize + 1);
                *at++ = ',';
                out.Commit(row < column.GetSize() ? column.PutText(at, row) : at);
            }
            out.Write("\n");
        }
    }
    return std::max<std::int64_t>(last - range.first + 1, 0);
}

/// A longer list of channels in a file name is cut; the first number alone tells the groups apart.
constexpr std::size_t VVMaxListLength = 60;

class TimeSeriesExport : public VDTestExport
{
public:
    TimeSeriesExport(const VDTimeSeriesTest& test, const VDReadSelection& selection)
        : test_(test), channels_(selection.channels.Choose(test)), range_(selection.points)
    {
        std::int64_t points = 0;
        for (const VDChannel& channel : channels_)
            points = std::max(points, channel.points);
        if (range_.first > std::max<std::int64_t>(points, 1))
            VFFail(DaxToolError::FirstPoint,
                   "Point " + std::to_string(range_.first) + " lies behind the end; there are " + std::to_string(points) +
                       " points",
                   "VFMakeTimeSeriesExport");
    }

    std::vector<VDCsvPart> MakeParts() const override
    {
        std::vector<VDCsvPart> parts;
        for (const VDChannelGroup& group : VFGroupByTime(channels_)) {
            VDJson numbers = VDJson::array();
            for (const VDChannel& channel : group)
                numbers.push_back(channel.number);
            parts.push_back({"channels " + VFChannelListText(group, ','),
                             "_ch" + VFChannelListText(group, '_').substr(0, VVMaxListLength),
                             {{"channels", numbers}},
                             [this, group](VDTextSink& out) { return VFWriteCsv(test_, group, range_, out); }});
        }
        return parts;
    }

    std::string WhyParts(const std::vector<VDCsvPart>& parts) const override
    {
        return "The channels have " + std::to_string(parts.size()) +
               " different sample rates or base times and can't share one CSV; write them to files with --out, or choose "
               "channels with --chan: " +
               parts.front().name.substr(parts.front().name.find(' ') + 1);
    }

    void WriteJson(VDTextSink& out) const override;

private:
    const VDTimeSeriesTest& test_;
    std::vector<VDChannel> channels_;
    VDPointRange range_;
};

/// Channel behind channel: {"path": ..., "channels": [{"index", "number", ..., "first", "values": [...]}, ...]. NaN and the
/// infinities are texts.
void TimeSeriesExport::WriteJson(VDTextSink& out) const
{
    VDString filename;
    VDString extension;
    VFCheck(FIDGetFilename(test_.GetId(), &filename, &extension));
    out.Write("{\"path\":" + VFJsonText(filename.Str(), -1) + ",\"xUnits\":" + VFJsonText(test_.GetXUnits(), -1) +
              ",\"channels\":[");
    const char* separator = "\n";
    for (const VDChannel& channel : channels_) {
        VDJson head = {{"index", channel.index},           {"number", channel.number},
                       {"title", channel.title},           {"units", channel.units},
                       {"type", VFTypeWord(channel.type)}, {"sampleRate", channel.sampleRate},
                       {"baseTime", channel.baseTime},     {"first", range_.first}};
        std::string text = VFJsonText(head, -1);
        text.pop_back();  // its closing brace: the values belong inside
        out.Write(separator + text + ",\"values\":[");
        separator = ",\n";
        try {
            VFWriteJsonValues(test_, channel, range_, out);
        } catch (const VDFailure&) {
            out.Write("]}]");
            throw;
        }
        out.Write("]}");
    }
    out.Write("]");
}

}  // namespace

std::unique_ptr<VDTestExport> VFMakeTimeSeriesExport(const VDDataTest& test, const VDReadSelection& selection)
{
    return std::make_unique<TimeSeriesExport>(static_cast<const VDTimeSeriesTest&>(test), selection);
}
