#include "ChannelExport.h"
#include "ChannelSelection.h"
#include "Commands.h"
#include "InputTest.h"
#include "StagedOutput.h"
#include "ToolError.h"

#include <algorithm>
#include <limits>

namespace fs = std::filesystem;

namespace {

/// `dax read FILE`: times and values as CSV or JSON.
class VDReadCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson WriteFiles(VDCommandContext& context, const VDTimeSeriesTest& test,
                      const std::vector<VDChannelGroup>& groups) const;
    void CheckFirst(const std::vector<VDChannel>& channels) const;

    VDTestArguments arguments_;
    VDChannelSelection selection_;
    VDPointRange range_;
    std::string out_;
    bool overwrite_ = false;
};

constexpr std::int64_t VVMaxPoint = std::numeric_limits<std::int64_t>::max() / 2;

/// A longer list of channels in a file name is cut; the first number alone tells the groups apart.
constexpr std::size_t VVMaxListLength = 60;

/// The file of one of several groups: "run.csv" becomes "run_ch1-3_7.csv".
std::string VFGroupName(const std::string& name, const VDChannelGroup& group)
{
    const fs::path path = name;
    const std::string list = VFChannelListText(group, '_').substr(0, VVMaxListLength);
    return (path.parent_path() / (path.stem().string() + "_ch" + list + path.extension().string())).string();
}

std::int64_t VFWriteCsvFile(const std::string& name, const VDTimeSeriesTest& test, const VDChannelGroup& group,
                            const VDPointRange& range)
{
    std::int64_t rows = 0;
    VFWriteNewFile(name, [&](VDTextSink& out) { rows = VFWriteCsv(test, group, range, out); });
    return rows;
}

CLI::App* VDReadCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("read", "Print times and values as CSV");
    arguments_.Register(*command, "FILE");
    selection_.Register(*command);
    command->add_option("--first", range_.first, "First point, from 1 (default: 1)")
        ->check(CLI::Range(std::int64_t{1}, VVMaxPoint).description(""))
        ->type_name("P");
    command->add_option("--count", range_.count, "Number of points (default: up to the end)")
        ->check(CLI::Range(std::int64_t{0}, VVMaxPoint).description(""))
        ->type_name("C");
    command
        ->add_option("--out", out_,
                     "CSV file to write; channels of different times go to a file each, named after it; - is the standard "
                     "output")
        ->type_name("FILE.csv");
    command->add_flag("--overwrite", overwrite_, "Replace existing output files");
    command->footer("With --json the values are printed as one document, a list for each channel, or with --out the list of "
                    "the files written.");
    return command;
}

VDJson VDReadCommand::Run(VDCommandContext& context)
{
    const VDInputTest input(context, arguments_);
    const VDTimeSeriesTest& test = input.GetTimeSeries();
    const std::vector<VDChannel> channels = selection_.Choose(test);
    CheckFirst(channels);
    const std::vector<VDChannelGroup> groups = VFGroupByTime(channels);
    if (!out_.empty() && out_ != VVStandardOutput)
        return WriteFiles(context, test, groups);
    if (context.IsJson()) {
        context.document = VTDocument::Begun;
        VFWriteJson(test, channels, range_, context.Out());
        return {};
    }
    if (groups.size() > 1)
        VFFail(
            DaxToolError::DifferentTimes,
            "The channels have " + std::to_string(groups.size()) +
                " different sample rates or base times and can't share one CSV; write them to files with --out, or choose "
                "channels with --chan: " +
                VFChannelListText(groups.front(), ','),
            "VDReadCommand::Run");
    VFWriteCsv(test, groups.front(), range_, context.Out());
    return {};
}

void VDReadCommand::CheckFirst(const std::vector<VDChannel>& channels) const
{
    std::int64_t points = 0;
    for (const VDChannel& channel : channels)
        points = std::max(points, channel.points);
    if (range_.first > std::max<std::int64_t>(points, 1))
        VFFail(DaxToolError::FirstPoint,
               "Point " + std::to_string(range_.first) + " lies behind the end; there are " + std::to_string(points) +
                   " points",
               "VDReadCommand::Run");
}

VDJson VDReadCommand::WriteFiles(VDCommandContext& context, const VDTimeSeriesTest& test,
                                 const std::vector<VDChannelGroup>& groups) const
{
    const std::string name = VDStagedOutput::ResolveName(out_);
    std::vector<std::string> names;
    for (const VDChannelGroup& group : groups)
        names.push_back(groups.size() == 1 ? name : VFGroupName(name, group));
    VDStagedOutput output(names, VFGetTestFiles(test.GetId()), overwrite_);
    VDJson files = VDJson::array();
    for (std::size_t index = 0; index < groups.size(); ++index) {
        const std::int64_t rows = VFWriteCsvFile(output.StagedName(names[index]), test, groups[index], range_);
        VDJson numbers = VDJson::array();
        for (const VDChannel& channel : groups[index])
            numbers.push_back(channel.number);
        files.push_back({{"path", names[index]}, {"channels", numbers}, {"rows", rows}});
    }
    output.Publish();
    if (context.IsJson())
        return {{"files", files}};
    for (std::size_t index = 0; index < groups.size(); ++index)
        context.Out().PutLine(names[index] + ": " + std::to_string(files[index]["rows"].get<std::int64_t>()) +
                              " rows of channels " + VFChannelListText(groups[index], ','));
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeReadCommand()
{
    return std::make_unique<VDReadCommand>();
}
