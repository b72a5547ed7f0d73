#include "CheckCommand.h"
#include "CopyCommand.h"
#include "DbcCommand.h"
#include "IdentifyCommand.h"
#include "InfoCommand.h"
#include "MetaCommand.h"
#include "ReadCommand.h"
#include "StatsCommand.h"
#include "TypesCommand.h"

#include "Program.h"

/// The subcommands, in the order of the help.
int main(int argc, char** argv)
{
    std::vector<std::unique_ptr<VDCommand>> commands;
    commands.push_back(std::make_unique<VDTypesCommand>());
    commands.push_back(std::make_unique<VDIdentifyCommand>());
    commands.push_back(std::make_unique<VDInfoCommand>());
    commands.push_back(std::make_unique<VDReadCommand>());
    commands.push_back(std::make_unique<VDStatsCommand>());
    commands.push_back(std::make_unique<VDMetaCommand>());
    commands.push_back(std::make_unique<VDCopyCommand>());
    commands.push_back(std::make_unique<VDCheckCommand>());
    commands.push_back(std::make_unique<VDDbcCommand>());
    return VFRunProgram(commands, {argv + 1, argv + argc});
}
