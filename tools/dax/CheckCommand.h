#pragma once

#include "Command.h"

/// `dax check FILE`: whether all that a storage file holds agrees with its checksums.
class VDCheckCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    std::string file_;
};
