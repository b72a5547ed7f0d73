#include "Commands.h"
#include "InputTest.h"
#include "NumberText.h"
#include "TestDescription.h"
#include "ToolError.h"

namespace {

/// `dax info FILE`: the test and its channels.
class VDInfoCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
};

/// The channels of a test that is no time series, from its id.
std::vector<VDChannel> VFListChannels(const VDFileIdHandle& test)
{
    int count = 0;
    VFCheck(FIDGetNumChans(test.Get(), &count));
    std::vector<VDChannel> channels(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        VDChannel& channel = channels[static_cast<std::size_t>(index)];
        VDString text;
        channel.index = index;
        VFCheck(FIDGetChanNumber(test.Get(), index, &channel.number));
        VFCheck(FIDGetChanTitle(test.Get(), index, &text));
        channel.title = text.Str();
        VFCheck(FIDGetChanUnits(test.Get(), index, &text));
        channel.units = text.Str();
        VFCheck(FIDGetChanType(test.Get(), index, &channel.type));
    }
    return channels;
}

VDJson VFChannelJson(const VDChannel& channel, bool timeSeries)
{
    VDJson json = {{"index", channel.index},
                   {"number", channel.number},
                   {"title", channel.title},
                   {"units", channel.units},
                   {"type", VFTypeWord(channel.type)}};
    if (timeSeries) {
        json["sampleRate"] = channel.sampleRate;
        json["baseTime"] = channel.baseTime;
        json["points"] = channel.points;
    }
    return json;
}

VDTextTable VFChannelTable(const std::vector<VDChannel>& channels, bool timeSeries)
{
    VDTextTable table("rrlllrrr");
    std::vector<std::string> heading = {"INDEX", "NUMBER", "TITLE", "UNITS", "TYPE"};
    if (timeSeries)
        heading.insert(heading.end(), {"SAMPLE RATE", "BASE TIME", "POINTS"});
    table.Add(heading);
    for (const VDChannel& channel : channels) {
        std::vector<std::string> row = {std::to_string(channel.index), std::to_string(channel.number), channel.title,
                                        channel.units, VFTypeWord(channel.type)};
        if (timeSeries)
            row.insert(row.end(),
                       {VFNumberText(channel.sampleRate), VFNumberText(channel.baseTime), VFNumberText(channel.points)});
        table.Add(row);
    }
    return table;
}

CLI::App* VDInfoCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("info", "Show a test and its channels");
    arguments_.Register(*command, "FILE");
    return command;
}

VDJson VDInfoCommand::Run(VDCommandContext& context)
{
    VDFileIdHandle test = VFChooseTest(context.Registry(), arguments_);
    const VDTestDescription description(context.Registry(), {}, test);
    const bool timeSeries = description.type.accessType == VTFileAccessTimeSeries;
    std::vector<VDChannel> channels;
    std::vector<VDFormatValue> values;
    std::string xTitle;
    std::string xUnits;
    VDString descriptor;
    VFCheck(FIDGetTestDescriptor(test.Get(), VTTestDescAll, &descriptor));
    if (timeSeries) {
        const VDInputTest input(context, arguments_, std::move(test));
        channels = input.GetTest().GetChannels();
        xTitle = input.GetTest().GetXTitle();
        xUnits = input.GetTest().GetXUnits();
        values = VFGetFormatValues(input.GetTest().Get());
    } else {
        channels = VFListChannels(test);
    }

    if (context.IsJson()) {
        VDJson document = description.ToJson();
        document["descriptor"] = descriptor.Str();
        if (timeSeries) {
            document["xTitle"] = xTitle;
            document["xUnits"] = xUnits;
            VDJson& named = document["formatValues"] = VDJson::object();
            for (const VDFormatValue& value : values)
                named[value.name] = value.Text();
        }
        VDJson& list = document["channels"] = VDJson::array();
        for (const VDChannel& channel : channels)
            list.push_back(VFChannelJson(channel, timeSeries));
        return document;
    }
    VDTextTable table("ll");
    description.AddTo(table);
    table.Add({"Descriptor", descriptor.Str()});
    if (!xTitle.empty() || !xUnits.empty())
        table.Add({"X axis", xTitle + (xUnits.empty() ? "" : " [" + xUnits + "]")});
    for (const VDFormatValue& value : values)
        if (value.Text() != description.title)
            table.Add({value.name, value.Text()});
    table.Add({"Channels", std::to_string(channels.size())});
    table.Print(context.Out());
    context.Out().Write("\n");
    VFChannelTable(channels, timeSeries).Print(context.Out());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeInfoCommand()
{
    return std::make_unique<VDInfoCommand>();
}
