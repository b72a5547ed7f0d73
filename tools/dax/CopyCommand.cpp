#include "BatchCopy.h"
#include "ChannelSelection.h"
#include "Commands.h"
#include "CopyFormat.h"
#include "CopyLosses.h"
#include "InputTest.h"
#include "OutputName.h"
#include "StagedOutput.h"
#include "ToolError.h"

#include "vdbase/VFFilename.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace {

/// `dax copy IN OUT`: a test in another file, also of another format.
class VDCopyCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDFileType ChooseFormat(const VDRegistry& registry, const VDFileIdHandle& source) const;
    void CheckFile(bool nameless) const;
    void CheckStrict(const std::vector<VDLoss>& losses) const;
    VDJson MakeDocument(const VDInputTest& input, const VDCopyPlan& plan, const std::string& output,
                        const std::vector<VDLoss>& losses) const;

    VDTestArguments arguments_;
    VDChannelSelection selection_;
    std::string out_;
    std::vector<std::string> more_;
    VDBatchCopy batch_;
    std::string template_;
    std::string keyword_;
    bool noMeta_ = false;
    bool overwrite_ = false;
    bool quiet_ = false;
};

/// Points of each channel in the trial that shows what a format keeps.
constexpr std::int64_t VVTrialPoints = 1024;

bool VFEqualNoCase(const std::string& left, const std::string& right)
{
    return VDString(left).CompareNoCase(right.c_str()) == 0;
}

std::vector<VDChannel> VFSortByNumber(std::vector<VDChannel> channels)
{
    std::stable_sort(channels.begin(), channels.end(),
                     [](const VDChannel& left, const VDChannel& right) { return left.number < right.number; });
    return channels;
}

std::int64_t VFCountValues(const VDCopyPlan& plan)
{
    std::int64_t values = 0;
    for (const VDChannel& channel : plan.channels)
        values += plan.source.CountValues(channel, std::numeric_limits<std::int64_t>::max());
    return values;
}

/// The copy under its staging name, which is written as often as it takes.
class StagedCopy
{
public:
    StagedCopy(const VDRegistry& registry, VDCopyPlan& plan, VDStagedOutput& output, const std::string& name)
        : registry_(registry), plan_(plan), output_(output), name_(output.StagedName(name))
    {
    }

    /// A format that keeps the channels' numbers lists them by those. Any other one gets them in the order that was asked
    /// for, under the numbers that it gives itself.
    void ArrangeChannels(const std::vector<VDChannel>& asked)
    {
        const auto isSame = [](const VDChannel& left, const VDChannel& right) { return left.index == right.index; };
        if (std::equal(asked.begin(), asked.end(), plan_.channels.begin(), isSame) || KeepsNumbers())
            return;
        plan_.channels = asked;
        std::iota(plan_.numbers.begin(), plan_.numbers.end(), 1);
    }

    /// Writes up to so many points of each channel, over what was written before.
    /// @return what the copy doesn't hold
    std::vector<VDLoss> Write(std::int64_t limit, bool quiet)
    {
        WriteWhole(limit, quiet);
        return VFFindLosses(registry_, plan_, written_, limit);
    }

private:
    void WriteWhole(std::int64_t limit, bool quiet)
    {
        while (!TryWrite(limit, quiet)) {
        }
    }

    /// @return false if the values need a form that the format wasn't asked for
    bool TryWrite(std::int64_t limit, bool quiet)
    {
        output_.Discard();
        const VDFileIdHandle target = VFMakeTargetId(plan_, name_);
        written_ = VFGetTestFiles(target.Get()).front();
        std::int64_t points = 0;
        for (const VDChannel& channel : plan_.channels)
            points += plan_.source.CountValues(channel, limit);
        VDProgressBar progress(points, quiet);
        try {
            VFWriteTest(plan_, target.Get(), limit, progress);
            return true;
        } catch (const VDUnfit& unfit) {
            const auto isIt = [&](const VDFormatValue& value) { return VFEqualNoCase(value.name, unfit.name); };
            if (std::erase_if(plan_.values, isIt) == 0)
                VFFail(DaxToolError::Incomplete, "The format refuses the values because of its " + unfit.name,
                       "VFWriteTest");
            return false;
        }
    }

    /// Whether the format lists channels under the numbers that they are given. Those of the trial are none that a format
    /// would give itself.
    bool KeepsNumbers()
    {
        const std::vector<int> own = plan_.numbers;
        std::iota(plan_.numbers.begin(), plan_.numbers.end(), 2);
        WriteWhole(VVTrialPoints, true);
        VDTestArguments arguments;
        arguments.file = written_;
        const VDFileIdHandle id = VFChooseTest(registry_, arguments);
        const std::unique_ptr<VDDataTest> trial = VFOpenDataTest(id);
        std::vector<int> numbers;
        for (const VDChannel& channel : trial->GetChannels())
            numbers.push_back(channel.number);
        return numbers == std::exchange(plan_.numbers, own);
    }

    const VDRegistry& registry_;
    VDCopyPlan& plan_;
    VDStagedOutput& output_;
    std::string name_;
    std::string written_;
};

CLI::App* VDCopyCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("copy", "Copy a test, also into another format");
    arguments_.Register(*command, "IN", "Write nothing if the input is damaged or the format can't hold everything");
    command
        ->add_option("OUT", out_,
                     "The file to write; its extension says the format (default: .z4t, the storage format). With --name the "
                     "folder to write it into (default: the current one)")
        ->type_name("");
    command->add_option("MORE", more_, "With --to, all that stands here is copied")->type_name("");
    batch_.Register(*command);
    selection_.Register(*command);
    command
        ->add_option("--name", template_,
                     "Name of the file to write, formed from metadata, such as run_#Test.Vehicle#_#Test.Run#; without an "
                     "extension it gets that of the format")
        ->type_name("TEMPLATE");
    command->add_flag("--no-meta", noMeta_, "Leave the metadata");
    command->add_option("--format", keyword_, "Keyword of the format, see 'dax types'")->type_name("KEYWORD");
    command->add_flag("--overwrite", overwrite_, "Replace an existing output");
    command->add_flag("--quiet", quiet_, "Show no progress");
    command->footer("What the format can't hold is listed at the end. OUT appears when it is whole, never before.");
    return command;
}

VDFileType VDCopyCommand::ChooseFormat(const VDRegistry& registry, const VDFileIdHandle& source) const
{
    constexpr const char* routine = "VDCopyCommand::ChooseFormat";
    if (out_ == VVStandardOutput)
        VFFail(DaxToolError::NotToOutput,
               "A copy is a file, which can't go to the standard output; 'dax read' writes CSV and JSON there", routine);
    const VDFileType own = VFGetFileType(registry, source);
    VDString base;
    VDString extension;
    VFSplitFilename(template_.empty() ? out_.c_str() : template_.c_str(), nullptr, &base, &extension);
    // A dot inside a keyword begins no extension.
    if (extension.Find("#") >= 0)
        extension.Empty();
    if (template_.empty())
        CheckFile(base.IsEmpty() && extension.IsEmpty());
    std::vector<VDFileType> fitting;
    std::string writable;
    for (const VDFileType& type : VFGetTargetTypes(registry, own)) {
        writable += (writable.empty() ? "" : ", ") + type.keyword;
        if (keyword_.empty() ? VFHasExtension(type, extension.Str()) : VFEqualNoCase(type.keyword, keyword_))
            fitting.push_back(type);
    }
    if (fitting.empty() && !keyword_.empty()) {
        int fileId = 0;
        int subId = 0;
        VFCheck(FINFGetFileIdFromKeyword(registry.Get(), keyword_.c_str(), VTFileAccessAll, &fileId, &subId));
        const VDFileType& wanted = registry.Describe(fileId, subId);
        const char* const reason = wanted.IsFloatStorage()               ? " is written from its own kind only"
                                   : wanted.accessType != own.accessType ? " can't hold this kind of data"
                                                                         : " can't be written";
        VFFail(DaxToolError::NoFormat, "The format " + keyword_ + reason + "; these can: " + writable, routine);
    }
    if (fitting.empty())
        VFFail(DaxToolError::NoFormat,
               "No format that can hold this kind of data and be written has the extension '" + extension.Str() +
                   "'; choose one with --format: " + writable,
               routine);
    for (const VDFileType& type : fitting)
        if (type.fileId == own.fileId && type.subId == own.subId)
            return type;
    return fitting.front();
}

/// @param nameless  the output's name ends in a folder
void VDCopyCommand::CheckFile(bool nameless) const
{
    std::error_code none;
    if (out_.empty())
        VFFail(DaxToolError::Usage, "The output is missing; give OUT or --name", "dax");
    if (nameless || std::filesystem::is_directory(out_, none))
        VFFail(DaxToolError::OutputWrite, "The output is a folder; name a file in it: " + out_,
               "VDCopyCommand::ChooseFormat");
}

void VDCopyCommand::CheckStrict(const std::vector<VDLoss>& losses) const
{
    if (!arguments_.strict || losses.empty())
        return;
    std::string text = "The copy would not hold everything, and nothing was written";
    for (const VDLoss& loss : losses)
        text += ";\n" + loss.ToText();
    VFFail(DaxToolError::Lossy, text, "VDCopyCommand::Run");
}

VDJson VDCopyCommand::MakeDocument(const VDInputTest& input, const VDCopyPlan& plan, const std::string& output,
                                   const std::vector<VDLoss>& losses) const
{
    VDJson lost = VDJson::array();
    for (const VDLoss& loss : losses)
        lost.push_back(loss.ToJson());
    return {{"input", input.GetPath()},
            {"output", output},
            {"keyword", plan.format.keyword},
            {"fileId", plan.format.fileId},
            {"subId", plan.format.subId},
            {"channels", plan.channels.size()},
            {plan.source.ValueWord(), VFCountValues(plan)},
            {"lost", lost}};
}

VDJson VDCopyCommand::Run(VDCommandContext& context)
{
    if (batch_.IsWanted()) {
        std::vector<std::string> specs = {arguments_.file};
        if (!out_.empty())
            specs.push_back(out_);
        specs.insert(specs.end(), more_.begin(), more_.end());
        return batch_.Run(context, specs,
                          {keyword_, template_, selection_.texts, arguments_.test, arguments_.strict, noMeta_, overwrite_});
    }
    if (!more_.empty())
        VFFail(DaxToolError::Usage, "Several tests are copied into a folder; give it with --to", "dax");
    const VDRegistry& registry = context.Registry();
    const VDInputTest input(context, arguments_);
    const VDDataTest& source = input.GetTest();
    const std::vector<VDChannel> asked = selection_.Choose(source);
    const VDFileType format = ChooseFormat(registry, input.GetId());
    VDCopyPlan plan{source, VFSortByNumber(asked), {}, format, VFGetValuesToKeep(source, !noMeta_), !noMeta_};
    for (const VDChannel& channel : plan.channels)
        plan.numbers.push_back(channel.number);
    const std::string name = VDStagedOutput::ResolveName(
        template_.empty() ? out_ : VFMakeOutputName(context, input.Access(), template_, out_, format));
    const std::vector<std::string> names = VFGetTargetFiles(format, VFMakeTargetId(plan, name).Get());
    VDStagedOutput output(names, VFGetTestFiles(input.GetId().Get()), overwrite_);
    StagedCopy copy(registry, plan, output, name);
    std::vector<VDLoss> losses;
    try {
        copy.ArrangeChannels(asked);
        if (arguments_.strict)
            CheckStrict(copy.Write(VVTrialPoints, true));
        losses = copy.Write(std::numeric_limits<std::int64_t>::max(), quiet_ || context.IsJson());
        CheckStrict(losses);
        output.Publish();
    } catch (const VDFailure&) {
        output.NameTargetsInErrors();
        throw;
    }

    if (context.IsJson())
        return MakeDocument(input, plan, names.front(), losses);
    context.Out().PutLine(names.front() + ": " + std::to_string(plan.channels.size()) +
                          (plan.channels.size() == 1 ? " channel, " : " channels, ") + std::to_string(VFCountValues(plan)) +
                          " " + source.ValueWord() + ", " + plan.format.description);
    for (const VDLoss& loss : losses)
        context.Out().PutLine("lost: " + loss.ToText());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeCopyCommand()
{
    return std::make_unique<VDCopyCommand>();
}
