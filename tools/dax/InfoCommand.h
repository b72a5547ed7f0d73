#pragma once

#include "Command.h"
#include "Identification.h"

/// `dax info FILE`: the test and its channels.
class VDInfoCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
};
