#pragma once

#include "Command.h"

// The subcommands. Each is one file with its options, its help and its work, and is known outside by the function that makes
// it; what several of them need is a piece of its own beside them. A new one gets its line here and in main.cpp.

std::unique_ptr<VDCommand> VFMakeTypesCommand();
std::unique_ptr<VDCommand> VFMakeIdentifyCommand();
std::unique_ptr<VDCommand> VFMakeLsCommand();
std::unique_ptr<VDCommand> VFMakeInfoCommand();
std::unique_ptr<VDCommand> VFMakeReadCommand();
std::unique_ptr<VDCommand> VFMakeStatsCommand();
std::unique_ptr<VDCommand> VFMakeMetaCommand();
std::unique_ptr<VDCommand> VFMakeEvalCommand();
std::unique_ptr<VDCommand> VFMakeCopyCommand();
std::unique_ptr<VDCommand> VFMakeAppendCommand();
std::unique_ptr<VDCommand> VFMakeSizeCommand();
std::unique_ptr<VDCommand> VFMakeExistsCommand();
std::unique_ptr<VDCommand> VFMakeDeleteCommand();
std::unique_ptr<VDCommand> VFMakeCheckCommand();
std::unique_ptr<VDCommand> VFMakeDbcCommand();
