#include "Commands.h"
#include "FormatValues.h"
#include "FoundTests.h"
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
    VDJson Show(VDCommandContext& context, const VDInputTest& input) const;

    VDTestsArguments arguments_;
    bool limits_ = false;
};

CLI::App* VDInfoCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("info", "Show tests and their channels");
    arguments_.Register(*command, "FILE");
    command->add_flag("--limits", limits_, "Work out the limits of columns, also of large tables");
    return command;
}

VDJson VDInfoCommand::Run(VDCommandContext& context)
{
    return VFForEachTest(context, arguments_, [&](const VDInputTest& input) { return Show(context, input); });
}

VDJson VDInfoCommand::Show(VDCommandContext& context, const VDInputTest& input) const
{
    const VDDataTest& test = input.GetTest();
    const VDTestDescription description(context.Registry(), {}, input.GetId());
    VDString descriptor;
    VFCheck(FIDGetTestDescriptor(input.GetId().Get(), VTTestDescAll, &descriptor));
    std::vector<VDFormatValue> values;
    if (test.Access() != nullptr)
        values = VFGetFormatValues(*test.Access());

    VDJson channels = VDJson::array();
    for (const VDChannel& channel : test.GetChannels()) {
        channels.push_back(test.DescribeChannel(channel));
        test.AddLimits(channel, limits_, channels.back());
    }

    if (context.IsJson()) {
        VDJson document = description.ToJson();
        document["descriptor"] = descriptor.Str();
        test.DescribeTest(document);
        if (test.Access() != nullptr) {
            VDJson& named = document["formatValues"] = VDJson::object();
            for (const VDFormatValue& value : values)
                named[value.name] = value.Text();
        }
        document["channels"] = channels;
        return document;
    }
    VDTextTable table("ll");
    description.AddTo(table);
    table.Add({"Descriptor", descriptor.Str()});
    test.DescribeTest(table);
    for (const VDFormatValue& value : values)
        if (value.Text() != description.title)
            table.Add({value.name, value.Text()});
    table.Add({"Channels", std::to_string(test.GetChannels().size())});
    table.Print(context.Out());
    context.Out().Write("\n");
    test.PrintChannels(channels, context.Out());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeInfoCommand()
{
    return std::make_unique<VDInfoCommand>();
}
