#include "CopyCommand.h"

#include "StagedOutput.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdbase/VFFilename.h"

#include <algorithm>
#include <limits>

namespace {

/// Points of each channel in the trial that shows what a format keeps.
constexpr std::int64_t VVTrialPoints = 1024;

/// Time-series formats that a copy of this type may have. A temporary one's files would be gone with the program, and the
/// older kind of storage file, which holds floats only, takes what comes from its own kind.
std::vector<VDFileType> VFGetTargetTypes(const VDRegistry& registry, const VDFileType& source)
{
    std::vector<VDFileType> types = registry.GetFileTypes();
    std::erase_if(types, [&](const VDFileType& type) {
        return !type.writable || type.temporary || type.accessType != VTFileAccessTimeSeries ||
               (type.IsFloatStorage() && !source.IsFloatStorage());
    });
    return types;
}

bool VFEqualNoCase(const std::string& left, const std::string& right)
{
    return VDString(left).CompareNoCase(right.c_str()) == 0;
}

/// Whether an output of this extension gets the format if none is asked for; without an extension it is the typed storage,
/// which has room for everything.
bool VFHasExtension(const VDFileType& type, const std::string& extension)
{
    if (extension.empty())
        return type.IsTypedStorage();
    return !type.IsFloatStorage() && std::any_of(type.extensions.begin(), type.extensions.end(),
                                                 [&](const std::string& own) { return VFEqualNoCase(own, extension); });
}

std::int64_t VFCountPoints(const std::vector<VDChannel>& channels)
{
    std::int64_t points = 0;
    for (const VDChannel& channel : channels)
        points += channel.points;
    return points;
}

}  // namespace

CLI::App* VDCopyCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("copy", "Copy a test, also into another format");
    arguments_.Register(*command, "IN");
    command->add_option("OUT", out_, "The file to write; its extension says the format (default: .z4t, the storage format)")
        ->required()
        ->type_name("");
    selection_.Register(*command);
    command->add_option("--format", keyword_, "Keyword of the format, see 'dax types'")->type_name("KEYWORD");
    command->add_flag("--overwrite", overwrite_, "Replace an existing output");
    command->add_flag("--strict", strict_, "Write nothing if the format can't hold everything");
    command->add_flag("--quiet", quiet_, "Show no progress");
    command->footer("What the format can't hold is listed at the end. OUT appears when it is whole, never before.");
    return command;
}

VDFileType VDCopyCommand::ChooseFormat(const VDRegistry& registry, const VDFileIdHandle& source) const
{
    constexpr const char* routine = "VDCopyCommand::ChooseFormat";
    const VDFileType own = VFGetFileType(registry, source);
    VDString base;
    VDString extension;
    VFSplitFilename(out_.c_str(), nullptr, &base, &extension);
    std::error_code none;
    if ((base.IsEmpty() && extension.IsEmpty()) || std::filesystem::is_directory(out_, none))
        VFFail(DaxToolError::OutputWrite, "The output is a folder; name a file in it: " + out_, routine);
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
        const bool floats = registry.Describe(fileId, subId).IsFloatStorage();
        VFFail(DaxToolError::NoFormat,
               "The format " + keyword_ + (floats ? " is written from its own kind only" : " can't be written") +
                   "; these can: " + writable,
               routine);
    }
    if (fitting.empty())
        VFFail(DaxToolError::NoFormat,
               "No format that can be written has the extension '" + extension.Str() +
                   "'; choose one with --format: " + writable,
               routine);
    for (const VDFileType& type : fitting)
        if (type.fileId == own.fileId && type.subId == own.subId)
            return type;
    return fitting.front();
}

void VDCopyCommand::CheckStrict(const std::vector<VDLoss>& losses) const
{
    if (!strict_ || losses.empty())
        return;
    std::string text = "The copy would not hold everything, and nothing was written";
    for (const VDLoss& loss : losses)
        text += ";\n" + loss.ToText();
    VFFail(DaxToolError::Lossy, text, "VDCopyCommand::Run");
}

VDJson VDCopyCommand::Run(VDCommandContext& context)
{
    const VDRegistry& registry = context.Registry();
    const VDFileIdHandle id = VFChooseTest(registry, arguments_);
    const VDTimeSeriesTest source(id);
    const VDCopyPlan plan{source, selection_.Choose(source), ChooseFormat(registry, id)};
    const std::string name = VDStagedOutput::ResolveName(out_);
    const VDFileIdHandle finalId = VFMakeTargetId(plan, name);
    const std::vector<std::string> names = VFGetTestFiles(finalId.Get());
    VDStagedOutput output(names, VFGetTestFiles(id.Get()), overwrite_);
    const VDFileIdHandle target = VFMakeTargetId(plan, output.StagedName(name));
    const std::string written = VFGetTestFiles(target.Get()).front();
    if (strict_) {
        VDProgressBar none(0, true);
        VFWriteTest(plan, target.Get(), VVTrialPoints, none);
        CheckStrict(VFFindLosses(registry, plan, written, VVTrialPoints));
        output.Discard();
    }
    constexpr std::int64_t all = std::numeric_limits<std::int64_t>::max();
    {
        VDProgressBar progress(VFCountPoints(plan.channels), quiet_ || context.IsJson());
        VFWriteTest(plan, target.Get(), all, progress);
    }
    const std::vector<VDLoss> losses = VFFindLosses(registry, plan, written, all);
    CheckStrict(losses);
    output.Publish();

    if (context.IsJson()) {
        VDJson lost = VDJson::array();
        for (const VDLoss& loss : losses)
            lost.push_back(loss.ToJson());
        VDJson document = {{"input", VFGetTestFiles(id.Get()).front()},
                           {"output", names.front()},
                           {"keyword", plan.format.keyword},
                           {"fileId", plan.format.fileId},
                           {"subId", plan.format.subId},
                           {"channels", plan.channels.size()},
                           {"points", VFCountPoints(plan.channels)}};
        document["lost"] = lost;
        return document;
    }
    context.Out().Write(names.front() + ": " + std::to_string(plan.channels.size()) +
                        (plan.channels.size() == 1 ? " channel, " : " channels, ") +
                        std::to_string(VFCountPoints(plan.channels)) + " points, " + plan.format.description + "\n");
    for (const VDLoss& loss : losses)
        context.Out().Write("lost: " + VFPrintable(loss.ToText()) + "\n");
    return {};
}
