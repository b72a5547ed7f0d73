#include "Commands.h"
#include "FoundTests.h"
#include "ToolError.h"

#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdstore/LQDataManager.h"

namespace {

/// `dax check FILE`: whether all that a storage file holds agrees with its checksums.
class VDCheckCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    static VDJson Check(VDCommandContext& context, const std::string& file);

    VDTestsArguments arguments_;
};

/// Throws for a file that is no storage file, or can't be read at all. One that is damaged is for the check to judge.
void VFCheckIsStorage(Z4Manager& files, const std::string& name)
{
    if (Z4File* file = files.OpenFile(name.c_str(), false)) {
        files.CloseFile(file, false);
        return;
    }
    const int code = VFErrorGetCode(VFGetBaseLibError());
    if (code == VDArchiveError::FileOpen || code == VDArchiveError::FileRead)
        throw VDFailure();
    VFErrorClear();
}

CLI::App* VDCheckCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("check", "Compare a storage file with its checksums");
    command->add_option("FILE", arguments_.files, "Files, or specs of tests")->required()->type_name("");
    command->footer("All that the last commit holds is read. The exit status is 1 if something is wrong.");
    return command;
}

VDJson VDCheckCommand::Run(VDCommandContext& context)
{
    return VFForEachFile(context, arguments_, [&](const std::string& file) { return Check(context, file); });
}

VDJson VDCheckCommand::Check(VDCommandContext& context, const std::string& file)
{
    Z4Manager& files = *LQGetDataManager()->GetFileManager();
    VFCheckIsStorage(files, file);
    VDStringArray found;
    const bool sound = files.CheckFile(file.c_str(), &found);
    VFErrorClear();  // all that was reported is among the findings
    context.negative = context.negative || !sound;

    if (context.IsJson()) {
        VDJson findings = VDJson::array();
        for (const VDString& finding : found)
            findings.push_back(finding.Str());
        return {{"path", file}, {"sound", sound}, {"findings", findings}};
    }
    if (sound)
        context.Out().PutLine(file + ": sound");
    for (const VDString& finding : found)
        context.Out().PutLine(file + ": " + finding.Str());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeCheckCommand()
{
    return std::make_unique<VDCheckCommand>();
}
