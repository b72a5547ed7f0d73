#include "Commands.h"
#include "Program.h"

/// The subcommands, in the order of the help.
int main(int argc, char** argv)
{
    constexpr std::unique_ptr<VDCommand> (*makers[])() = {
        VFMakeTypesCommand, VFMakeIdentifyCommand, VFMakeLsCommand,     VFMakeInfoCommand,  VFMakeReadCommand,
        VFMakeStatsCommand, VFMakeMetaCommand,     VFMakeEvalCommand,   VFMakeCopyCommand,  VFMakeAppendCommand,
        VFMakeSizeCommand,  VFMakeExistsCommand,   VFMakeDeleteCommand, VFMakeCheckCommand, VFMakeDbcCommand,
    };
    std::vector<std::unique_ptr<VDCommand>> commands;
    for (const auto& make : makers)
        commands.push_back(make());
    return VFRunProgram(commands, {argv + 1, argv + argc});
}
