#include "Commands.h"
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
    std::string file_;
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
    command->add_option("FILE", file_, "The file")->required()->type_name("");
    command->footer("All that the last commit holds is read. The exit status is 1 if something is wrong.");
    return command;
}

VDJson VDCheckCommand::Run(VDCommandContext& context)
{
    Z4Manager& files = *LQGetDataManager()->GetFileManager();
    VFCheckIsStorage(files, file_);
    VDStringArray found;
    const bool sound = files.CheckFile(file_.c_str(), &found);
    VFErrorClear();  // all that was reported is among the findings
    context.negative = !sound;

    if (context.IsJson()) {
        VDJson findings = VDJson::array();
        for (const VDString& finding : found)
            findings.push_back(finding.Str());
        return {{"path", file_}, {"sound", sound}, {"findings", findings}};
    }
    if (sound)
        context.Out().PutLine(file_ + ": sound");
    for (const VDString& finding : found)
        context.Out().PutLine(file_ + ": " + finding.Str());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeCheckCommand()
{
    return std::make_unique<VDCheckCommand>();
}
