#pragma once

#include "Command.h"

/// Runs the program: finds the subcommand, runs it, prints its result and what went wrong.
/// @param arguments  without the program's name
/// @return the exit status: 0, or 1 if anything failed
int VFRunProgram(const std::vector<std::unique_ptr<VDCommand>>& commands, std::vector<std::string> arguments);
