#include "ChannelExport.h"

#include "Interrupt.h"
#include "Json.h"
#include "Printable.h"
#include "ToolError.h"

#include <algorithm>
#include <bit>
#include <map>

namespace {

/// Memory for the blocks of all columns together.
constexpr std::int64_t VVBlockMemory = std::int64_t{16} << 20;

std::string VFWithUnits(const std::string& title, const std::string& units)
{
    return units.empty() ? title : title + " [" + units + "]";
}

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

}  // namespace

std::int64_t VDPointRange::Last(const VDChannel& channel) const
{
    if (count < 0 || count > channel.points - first)
        return channel.points;
    return first + count - 1;
}

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

void VFWriteJson(const VDTimeSeriesTest& test, const std::vector<VDChannel>& channels, const VDPointRange& range,
                 VDTextSink& out)
{
    VDString filename;
    VDString extension;
    VFCheck(FIDGetFilename(test.GetId(), &filename, &extension));
    out.Write("{\"path\":" + VFJsonText(filename.Str(), -1) + ",\"xUnits\":" + VFJsonText(test.GetXUnits(), -1) +
              ",\"channels\":[");
    const char* separator = "\n";
    for (const VDChannel& channel : channels) {
        VDJson head = {{"index", channel.index},           {"number", channel.number},
                       {"title", channel.title},           {"units", channel.units},
                       {"type", VFTypeWord(channel.type)}, {"sampleRate", channel.sampleRate},
                       {"baseTime", channel.baseTime},     {"first", range.first}};
        std::string text = VFJsonText(head, -1);
        text.pop_back();  // its closing brace: the values belong inside
        out.Write(separator + text + ",\"values\":[");
        separator = ",\n";
        try {
            VFWriteJsonValues(test, channel, range, out);
        } catch (const VDFailure&) {
            out.Write("]}]");
            throw;
        }
        out.Write("]}");
    }
    out.Write("]");
}
