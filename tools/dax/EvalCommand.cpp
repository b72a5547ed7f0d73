#include "Commands.h"
#include "InputTest.h"
#include "ItemTypes.h"
#include "TestMetaData.h"
#include "ToolError.h"

#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdstore/LQChannelMapper.h"

namespace {

/// `dax eval FILE TEXT`: a text with its keywords replaced, or the value of an expression over metadata.
class VDEvalCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
    std::string text_;
    std::string expression_;
    std::optional<int> channel_;
    bool keep_ = false;
};

/// The index of a channel; throws for a number that the test doesn't have. Without one, that of all channels.
int VFChannelOf(const LQChannelMapper& mapper, const std::optional<int>& number)
{
    constexpr int all = -1;
    if (!number)
        return all;
    const int index = mapper.IndexFromNumber(*number, false);
    if (index < 0)
        VFFail(DaxToolError::UnknownChannel, "Channel " + std::to_string(*number) + " is not in this test",
               "VDEvalCommand::Run");
    return index;
}

CLI::App* VDEvalCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("eval", "Fill a text from metadata, or evaluate an expression over them");
    arguments_.Register(*command, "FILE");
    CLI::Option* text = command->add_option("TEXT", text_, "A text with #Set.Item# in it")->type_name("");
    CLI::Option* value = command->add_option("--value", expression_, "The value of this item or expression instead")
                             ->type_name("EXPRESSION");
    text->excludes(value);
    command->add_option("--chan", channel_, "Where to look: the channel of this number (default: all, in their order)")
        ->type_name("N");
    command->add_flag("--keep", keep_, "Leave keywords as they are whose item isn't found")->excludes(value);
    command->footer("Keywords are [chanN.|chan?(expression).][test.][Set.]Item; an expression may be "
                    "'#Sensor.Gain# * 2 > 1'.");
    return command;
}

VDJson VDEvalCommand::Run(VDCommandContext& context)
{
    if (text_.empty() && expression_.empty())
        VFFail(DaxToolError::Usage, "There is nothing to evaluate; give a text or --value", "dax");
    const VDInputTest input(context, arguments_);
    LQChannelMapper* const mapper = &VFNeedMetaData(input.Access());
    const int channel = VFChannelOf(*mapper, channel_);
    VDString result;
    if (expression_.empty()) {
        VDString text(text_);
        VFCheck(VFDaxEvaluateStringFromMeta(text, mapper, channel, keep_ ? 0 : 1, &result, keep_ ? 1 : 0, nullptr, nullptr, 0));
        if (context.IsJson())
            return {{"path", input.GetPath()}, {"text", text_}, {"result", result.Str()}};
    } else {
        VDString expression(expression_);
        int type = Z4TypeString;
        VFCheck(VFDaxEvaluateValueFromMeta(expression, mapper, channel, &result, &type));
        if (context.IsJson())
            return {{"path", input.GetPath()},
                    {"expression", expression_},
                    {"result", result.Str()},
                    {"type", VFItemTypeWord(static_cast<Z4PropertyType>(type))}};
    }
    context.Out().PutLine(result.Str());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeEvalCommand()
{
    return std::make_unique<VDEvalCommand>();
}
