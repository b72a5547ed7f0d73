#include "ChannelSelection.h"
#include "ChannelStats.h"
#include "Commands.h"
#include "FoundTests.h"
#include "TextTable.h"

#include <algorithm>
#include <iterator>

namespace {

/// `dax stats FILE`: the statistics of each channel.
class VDStatsCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson Show(VDCommandContext& context, const VDInputTest& input) const;

    VDTestsArguments arguments_;
    VDChannelSelection selection_;
    bool calculate_ = false;
    bool quiet_ = false;
};

constexpr const char* VVValueNames[] = {"max", "min", "mean", "sdev", "rms"};
constexpr const char* VVPointNames[] = {"pointOfMax", "pointOfMin", "pointOfAbs"};
constexpr const char* VVHint = "Channels without stored statistics: --calc works them out from the data";

using OptionalStats = std::optional<VDChannelStats>;

VDJson VFStatsJson(const VDChannel& channel, const OptionalStats& stats)
{
    VDJson json = {
        {"number", channel.number}, {"title", channel.title}, {"units", channel.units}, {"type", VFTypeWord(channel.type)}};
    // The text keeps a float from growing digits.
    for (std::size_t at = 0; at < std::size(VVValueNames); ++at)
        json[VVValueNames[at]] = stats ? VFJsonNumber(stats->texts[at]) : VDJson();
    for (std::size_t at = 0; at < std::size(VVPointNames); ++at)
        json[VVPointNames[at]] = stats ? VDJson(stats->points[at]) : VDJson();
    return json;
}

std::vector<std::string> VFStatsRow(const VDChannel& channel, const OptionalStats& stats)
{
    std::vector<std::string> row = {std::to_string(channel.number), channel.title, channel.units, VFTypeWord(channel.type)};
    if (!stats) {
        row.insert(row.end(), std::size(VVValueNames) + std::size(VVPointNames), "-");
        return row;
    }
    row.insert(row.end(), stats->texts.begin(), stats->texts.end());
    for (const std::int64_t point : stats->points)
        row.push_back(std::to_string(point));
    return row;
}

CLI::App* VDStatsCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("stats", "Show the statistics of each channel");
    arguments_.Register(*command, "FILE");
    selection_.Register(*command);
    command->add_flag("--calc", calculate_, "Work them out from the data; the file stays as it is");
    command->add_flag("--quiet", quiet_, "Show no progress");
    command->footer("Without --calc the statistics are those that the file stores. Digital channels have none.");
    return command;
}

VDJson VDStatsCommand::Run(VDCommandContext& context)
{
    return VFForEachTest(context, arguments_, [&](const VDInputTest& input) { return Show(context, input); });
}

VDJson VDStatsCommand::Show(VDCommandContext& context, const VDInputTest& input) const
{
    const VDTimeSeriesTest& test = input.GetTimeSeries();
    const std::vector<VDChannel> channels = selection_.Choose(test);
    if (calculate_)
        VFCalculateStats(test, channels, quiet_ || context.IsJson());

    VDJson list = VDJson::array();
    VDTextTable table("rlllrrrrrrrr");
    table.Add({"NUMBER", "TITLE", "UNITS", "TYPE", "MAX", "MIN", "MEAN", "SDEV", "RMS", "AT MAX", "AT MIN", "AT ABS"});
    bool missing = false;
    for (const VDChannel& channel : channels) {
        const OptionalStats stats = VFGetStats(test, channel);
        missing = missing || (!stats && VFHasStats(channel));
        if (context.IsJson())
            list.push_back(VFStatsJson(channel, stats));
        else
            table.Add(VFStatsRow(channel, stats));
    }
    if (context.IsJson()) {
        VDJson document = {{"path", input.GetPath()}, {"calculated", calculate_}, {"channels", list}};
        if (missing)
            document["hint"] = VVHint;
        return document;
    }
    table.Print(context.Out());
    if (missing)
        context.Out().PutLine(VVHint);
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeStatsCommand()
{
    return std::make_unique<VDStatsCommand>();
}
